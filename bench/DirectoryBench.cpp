// bench_directories RUNS: milliseconds for resolving the target paths of a module with 2,000
// directories, in chains of 12, and 10,000 files.
//
//   whole_module   every directory once, as a client does
//   every_file     one resolution per file instead
//   walk_calls     the baseline: only the installer calls for walking up from every directory

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/Measure.h"
#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "common/Path.h"
#include "msidb/Database.h"
#include "msidb/DirectoryResolution.h"
#include "msidb/MsiHandle.h"
#include "msidb/TargetDirectories.h"
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

/// Ends the program unless a baseline or a figure has done its work.
void Require(const char* what, bool isDone) {
  if (!isDone) {
    std::fprintf(stderr, "bench_directories: %s\n", what);
    std::exit(1);
  }
}

/// Builds a database with kDirectories rows below ProgramFilesFolder and returns its path.
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

/// Walks from `key` to the root with bare installer calls. Returns the number of rows.
int BareWalk(MSIHANDLE database, const wchar_t* key) {
  MSIHANDLE row = ::MsiCreateRecord(1);
  ::MsiRecordSetStringW(row, 1, key);
  MSIHANDLE view = 0;
  ::MsiDatabaseOpenViewW(database,
                         L"SELECT `Directory_Parent`,`DefaultDir`, `Directory` FROM `Directory` "
                         L"WHERE `Directory`.`Directory`=?",
                         &view);
  int rows = 0;
  for (;;) {
    ::MsiViewExecute(view, row);
    ::MsiCloseHandle(row);
    row = 0;
    wchar_t text[MAX_PATH];
    if (::MsiViewFetch(view, &row) != ERROR_SUCCESS) {
      break;
    }
    ++rows;
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
  return rows;
}

void BareWalks(const CWideString& module) {
  MSIHANDLE database = 0;
  ::MsiOpenDatabaseW(module.c_str(), MSIDBOPEN_READONLY, &database);
  for (int i = 0; i < kDirectories; ++i) {
    // The directory's own row, those of the chain above it, and that of the root.
    Require("a walk broke off", BareWalk(database, KeyOf(i).c_str()) == i % kDepth + 2);
  }
  ::MsiCloseHandle(database);
}

/// As a client does: collects the directory keys of all files, then resolves each key once.
void WholeModule(const CWideString& module) {
  msidb::TargetDirectories paths;
  for (int i = 0; i < kFiles; ++i) {
    paths.try_emplace(KeyOf(i % kDirectories));
  }
  Require("no target paths",
          SUCCEEDED(msidb::ResolveModuleDirectories(module, TargetPathOptions(), paths)));
  for (const auto& [key, directory] : paths) {
    Require("no target path", SUCCEEDED(directory.result) && !directory.path.empty());
  }
}

void EveryFile(const CWideString& module) {
  const auto database = msidb::ModuleDatabase::Open(module);
  const msidb::DirectoryTable table(*database);
  for (int i = 0; i < kFiles; ++i) {
    msidb::RequireDirectoryPath(table, KeyOf(i % kDirectories), TargetPathOptions());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc == 2 ? std::atoi(argv[1]) : 5;
  const HRESULT hr = RunAtBoundary(GUID_NULL, [&] {
    const CWideString module = BuildModule();
    WholeModule(module);
    for (int i = 0; i < runs; ++i) {
      PrintRun("whole_module", Milliseconds([&] { WholeModule(module); }));
      PrintRun("every_file", Milliseconds([&] { EveryFile(module); }));
      PrintRun("walk_calls", Milliseconds([&] { BareWalks(module); }));
    }
    ::DeleteFileW(module.c_str());
    return S_OK;
  });
  if (FAILED(hr)) {
    std::fprintf(stderr, "bench_directories: 0x%08lX\n", static_cast<unsigned long>(hr));
  }
  return FAILED(hr) ? 1 : 0;
}
