// Target paths of a module with 2,000 directories, in chains of 12, and 10,000 files. The baseline
// makes the installer calls of the same walks and nothing else.

#include <cstdio>
#include <string>

#include "bench/Measure.h"
#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "common/Path.h"
#include "msidb/Database.h"
#include "msidb/DirectoryResolution.h"
#include "msidb/ModuleDirectories.h"
#include "msidb/MsiHandle.h"
#include "traits/TargetPath.h"

namespace {

constexpr int kDirectories = 2000;
constexpr int kDepth = 12;
constexpr int kFiles = 10000;
constexpr wchar_t kSuffix[] = L".0123456789ABCDEF0123456789ABCDEF";

CWideString KeyOf(int directory) {
  return CWideString::Format(L"Directory%d%s", directory, kSuffix);
}

CWideString TemporaryFolder() {
  wchar_t folder[MAX_PATH + 1];
  ::GetTempPathW(MAX_PATH + 1, folder);
  return folder;
}

/// A database whose Directory table has kDirectories rows below ProgramFilesFolder.
CWideString BuildModule() {
  const CWideString folder = TemporaryFolder();
  const CWideString table = L"BenchDirectory.idt";
  std::string rows =
      "Directory\tDirectory_Parent\tDefaultDir\r\ns72\tS72\tl255\r\nDirectory\tDirectory\r\n"
      "TARGETDIR\t\tSourceDir\r\nProgramFilesFolder\tTARGETDIR\t.\r\n";
  for (int i = 0; i < kDirectories; ++i) {
    const CWideString parent = i % kDepth == 0 ? CWideString(L"ProgramFilesFolder") : KeyOf(i - 1);
    const CWideString row = CWideString::Format(L"%s\t%s\tD%d|Folder number %d\r\n",
                                                KeyOf(i).c_str(), parent.c_str(), i, i);
    for (const wchar_t c : std::wstring_view(row)) {
      rows += static_cast<char>(c);
    }
  }
  const std::wstring idt(JoinPath(folder, table));
  {
    FILE* const file = ::_wfopen(idt.c_str(), L"wb");
    if (!file) {
      RaiseLastError();
    }
    std::fwrite(rows.data(), 1, rows.size(), file);
    std::fclose(file);
  }
  CWideString module = JoinPath(folder, L"BenchDirectory.msm");
  msidb::Database database = msidb::Database::Open(module, MSIDBOPEN_CREATE);
  database.Import(folder, table);
  database.Commit();
  ::DeleteFileW(idt.c_str());
  return module;
}

/// The walk from `key` to the root with bare installer calls.
void BareWalk(MSIHANDLE database, const wchar_t* key) {
  MSIHANDLE row = ::MsiCreateRecord(1);
  ::MsiRecordSetStringW(row, 1, key);
  MSIHANDLE view = 0;
  ::MsiDatabaseOpenViewW(database,
                         L"SELECT `Directory_Parent`,`DefaultDir`, `Directory` FROM `Directory` "
                         L"WHERE `Directory`.`Directory`=?",
                         &view);
  for (;;) {
    ::MsiViewExecute(view, row);
    ::MsiCloseHandle(row);
    row = 0;
    wchar_t text[MAX_PATH];
    if (::MsiViewFetch(view, &row) != ERROR_SUCCESS) {
      break;
    }
    for (const UINT field : {2U, 3U}) {
      DWORD length = MAX_PATH;
      ::MsiRecordGetStringW(row, field, text, &length);
    }
    if (::wcscmp(text, L"ProgramFilesFolder") == 0) {
      break;
    }
    ::MsiViewClose(view);
  }
  ::MsiCloseHandle(row);
  ::MsiCloseHandle(view);
}

void BareWalks(const CWideString& module) {
  MSIHANDLE database = 0;
  ::MsiOpenDatabaseW(module.c_str(), MSIDBOPEN_READONLY, &database);
  for (int i = 0; i < kDirectories; ++i) {
    BareWalk(database, KeyOf(i).c_str());
  }
  ::MsiCloseHandle(database);
}

/// As a client does: the keys of all files, of which each directory is asked for once.
void WholeModule(const CWideString& module) {
  msidb::TargetDirectories paths;
  for (int i = 0; i < kFiles; ++i) {
    paths.try_emplace(KeyOf(i % kDirectories));
  }
  msidb::ResolveModuleDirectories(module, TargetPathOptions(), paths);
}

void EveryFile(const CWideString& module) {
  const auto database = msidb::ModuleDatabase::Open(module);
  const msidb::DirectoryTable table(*database);
  for (int i = 0; i < kFiles; ++i) {
    msidb::RequireDirectoryPath(table, KeyOf(i % kDirectories), TargetPathOptions());
  }
}

void Row(const char* name, double time, double baseline) {
  std::printf("%-58s %9.1f ms %7.2f\n", name, time, time / baseline);
}

}  // namespace

int main() {
  const HRESULT hr = RunAtBoundary(GUID_NULL, [] {
    const CWideString module = BuildModule();
    const double baseline = MedianMilliseconds([&] { BareWalks(module); });
    std::printf("2,000 directories of depth 12, 10,000 files\n");
    Row("baseline: bare installer calls, each directory once", baseline, baseline);
    Row("target paths of the whole module", MedianMilliseconds([&] { WholeModule(module); }),
        baseline);
    Row("one resolution per file instead", MedianMilliseconds([&] { EveryFile(module); }),
        baseline);
    ::DeleteFileW(module.c_str());
    return S_OK;
  });
  if (FAILED(hr)) {
    std::fprintf(stderr, "bench_directories: 0x%08lX\n", static_cast<unsigned long>(hr));
  }
  return FAILED(hr) ? 1 : 0;
}
