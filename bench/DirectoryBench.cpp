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

qm::common::WideString MakeKey(int directory) {
  return qm::common::WideString::Format(L"Directory%d%s", directory, kSuffix);
}

qm::common::WideString TemporaryFolder() {
  wchar_t folder[MAX_PATH + 1];
  ::GetTempPathW(MAX_PATH + 1, folder);
  return folder;
}

/// Ends the program with the message `what` unless `isDone`.
void Require(const char* what, bool isDone) {
  if (!isDone) {
    std::fprintf(stderr, "bench_directories: %s\n", what);
    std::exit(1);
  }
}

/// Builds a database with kDirectories rows below ProgramFilesFolder and returns its path.
qm::common::WideString BuildModule() {
  const qm::common::WideString folder = TemporaryFolder();
  const qm::common::WideString table = L"BenchDirectory.idt";
  std::string rows =
      "Directory\tDirectory_Parent\tDefaultDir\r\ns72\tS72\tl255\r\nDirectory\tDirectory\r\n"
      "TARGETDIR\t\tSourceDir\r\nProgramFilesFolder\tTARGETDIR\t.\r\n";
  for (int i = 0; i < kDirectories; ++i) {
    const qm::common::WideString parent =
        i % kDepth == 0 ? qm::common::WideString(L"ProgramFilesFolder") : MakeKey(i - 1);
    const qm::common::WideString row = qm::common::WideString::Format(
        L"%s\t%s\tD%d|Folder number %d\r\n", MakeKey(i).c_str(), parent.c_str(), i, i);
    for (const wchar_t c : std::wstring_view(row)) {
      rows += static_cast<char>(c);
    }
  }
  const std::wstring idt(qm::common::JoinPath(folder, table));
  {
    FILE* const file = ::_wfopen(idt.c_str(), L"wb");
    if (!file) {
      qm::com::RaiseLastError();
    }
    std::fwrite(rows.data(), 1, rows.size(), file);
    std::fclose(file);
  }
  qm::common::WideString module = qm::common::JoinPath(folder, L"BenchDirectory.msm");
  qm::msidb::Database database = qm::msidb::Database::Open(module, MSIDBOPEN_CREATE);
  database.Import(folder, table);
  database.Commit();
  ::DeleteFileW(idt.c_str());
  return module;
}

/// Walks from `key` to the root with bare installer calls. Returns the number of rows.
int WalkByInstaller(MSIHANDLE database, const wchar_t* key) {
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

void BareWalks(const qm::common::WideString& module) {
  MSIHANDLE database = 0;
  ::MsiOpenDatabaseW(module.c_str(), MSIDBOPEN_READONLY, &database);
  for (int i = 0; i < kDirectories; ++i) {
    // The directory's own row, those of the chain above it, and that of the root.
    Require("a walk broke off", WalkByInstaller(database, MakeKey(i).c_str()) == i % kDepth + 2);
  }
  ::MsiCloseHandle(database);
}

/// As a client does: collects the directory keys of all files, then resolves each key once.
void WholeModule(const qm::common::WideString& module) {
  qm::msidb::TargetDirectoryMap paths;
  for (int i = 0; i < kFiles; ++i) {
    paths.try_emplace(MakeKey(i % kDirectories));
  }
  Require("no target paths", SUCCEEDED(qm::msidb::ResolveTargetDirectories(
                                 module, qm::traits::MakeTargetPathOptions(), paths)));
  for (const auto& [key, directory] : paths) {
    Require("no target path", SUCCEEDED(directory.result) && !directory.path.empty());
  }
}

void EveryFile(const qm::common::WideString& module) {
  const auto database = qm::msidb::ModuleDatabase::Open(module);
  const qm::msidb::DirectoryTable table(*database);
  for (int i = 0; i < kFiles; ++i) {
    qm::msidb::ResolveDirectoryPathOrRaise(table, MakeKey(i % kDirectories),
                                           qm::traits::MakeTargetPathOptions());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc == 2 ? std::atoi(argv[1]) : 5;
  const HRESULT hr = qm::com::RunAtBoundary(GUID_NULL, [&] {
    const qm::common::WideString module = BuildModule();
    WholeModule(module);
    for (int i = 0; i < runs; ++i) {
      qm::bench::PrintRun("whole_module", qm::bench::Milliseconds([&] { WholeModule(module); }));
      qm::bench::PrintRun("every_file", qm::bench::Milliseconds([&] { EveryFile(module); }));
      qm::bench::PrintRun("walk_calls", qm::bench::Milliseconds([&] { BareWalks(module); }));
    }
    ::DeleteFileW(module.c_str());
    return S_OK;
  });
  if (FAILED(hr)) {
    std::fprintf(stderr, "bench_directories: 0x%08lX\n", static_cast<unsigned long>(hr));
  }
  return FAILED(hr) ? 1 : 0;
}
