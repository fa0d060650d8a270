// bench_catalog FIGURE FOLDER: measures one figure of the catalog, or a baseline, over a folder of
// modules and prints it. Each figure needs a process of its own, because figures measured in one
// process would affect each other. Times are in milliseconds.
//
//   list         the first list of a process
//   list_calls   its baseline: only the installer calls for each module
//   tables       the first list of a process, and every property of its modules and their rows
//   table_calls  its baseline: the calls of list_calls, then those for the rows of each module
//   pass_calls   the installer calls for the same data in one pass that opens each module once
//   again        a list when nothing has changed
//   pass         its baseline: FindFirstFileW/FindNextFileW and CompareFileTime
//   changed      a list when one file was rewritten
//   find         one call of FindModule
//   memory       heap bytes per module

#include <windows.h>
// The headers below need its types.
#include <msi.h>
#include <msidefs.h>
#include <msiquery.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "bench/HeapBytes.h"
#include "bench/Measure.h"
#include "bench/Objects.h"
#include "client/catalog/Properties.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"

namespace qm::bench {

namespace {

struct ListedFile {
  std::wstring name;
  FILETIME lastWrite;
};

/// Makes the application services return `folder` as the module search path and nothing else.
void Configure(const wchar_t* folder) {
  ::SetEnvironmentVariableW(L"QM_MODULE_PATH", folder);
  for (const wchar_t* name : {L"QM_USER_MODULE_PATH", L"QM_GALLERY_ROOT", L"QM_DATA_DIR",
                              L"QM_FILE_INDEX_DIR", L"QM_MODULE_INDEX_DIR"}) {
    ::SetEnvironmentVariableW(name, L"");
  }
}

common::ComPtr<IMMCatalogVelmora> NewCatalog() {
  return NewObject<IMMCatalogVelmora>(L"QmMMUpdater2.dll", CLSID_MMCatalog);
}

void ListModules(IMMCatalogVelmora& catalog) {
  common::ComPtr<IMergeModules> modules;
  ThrowIfFailed("modules", catalog.get_MergeModules(modules.Put()));
}

long Count(IMMCatalogVelmora& catalog) {
  common::ComPtr<IMergeModules> modules;
  long count = 0;
  ThrowIfFailed("modules", catalog.get_MergeModules(modules.Put()));
  modules->get_Count(&count);
  return count;
}

/// A buffer for any text of a module, so that the baselines allocate nothing themselves.
wchar_t g_text[4096];

void GetField(MSIHANDLE row, UINT field) {
  DWORD length = static_cast<DWORD>(std::size(g_text));
  Require("string", ::MsiRecordGetStringW(row, field, g_text, &length));
}

MSIHANDLE OpenDatabase(const std::wstring& path) {
  MSIHANDLE database = 0;
  Require("open", ::MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_READONLY, &database));
  return database;
}

/// Reads the signature row of an open module.
void GetSignature(MSIHANDLE database) {
  MSIHANDLE view = 0, row = 0;
  Require("view", ::MsiDatabaseOpenViewW(database, L"SELECT * FROM ModuleSignature", &view));
  Require("execute", ::MsiViewExecute(view, 0));
  Require("fetch", ::MsiViewFetch(view, &row));
  ::MsiRecordGetInteger(row, 2);
  GetField(row, 1);
  GetField(row, 3);
  ::MsiCloseHandle(row);
  ::MsiCloseHandle(view);
}

/// Reads the summary properties of an open database, or of the file `path` if that is not null.
void GetSummary(MSIHANDLE database, const wchar_t* path) {
  MSIHANDLE summary = 0;
  Require("summary", ::MsiGetSummaryInformationW(database, path, 0, &summary));
  for (const UINT property : {PID_AUTHOR, PID_COMMENTS, PID_REVNUMBER, PID_SUBJECT}) {
    UINT type = 0;
    INT number = 0;
    FILETIME time;
    DWORD length = static_cast<DWORD>(std::size(g_text));
    Require("property", ::MsiSummaryInfoGetPropertyW(summary, property, &type, &number, &time,
                                                     g_text, &length));
  }
  ::MsiCloseHandle(summary);
}

/// The fields of a table that the interfaces return: those that are texts and those that are
/// numbers.
struct ShownTable {
  const wchar_t* query;
  std::vector<UINT> texts;
  std::vector<UINT> numbers;
};

/// Reads all rows of a table. Does nothing if the module does not have it.
void GetRows(MSIHANDLE database, const ShownTable& table) {
  MSIHANDLE view = 0, row = 0;
  const UINT result = ::MsiDatabaseOpenViewW(database, table.query, &view);
  if (result == ERROR_BAD_QUERY_SYNTAX) {
    return;
  }
  Require("view", result);
  Require("execute", ::MsiViewExecute(view, 0));
  while (::MsiViewFetch(view, &row) == ERROR_SUCCESS) {
    for (const UINT field : table.texts) {
      GetField(row, field);
    }
    for (const UINT field : table.numbers) {
      ::MsiRecordGetInteger(row, field);
    }
    ::MsiCloseHandle(row);
  }
  ::MsiCloseHandle(view);
}

double FirstList() {
  const auto catalog = NewCatalog();
  return Milliseconds([&] { ListModules(*catalog); });
}

template <class Use>
void ForEachRecord(IMMCatalogVelmora& catalog, Use use) {
  common::ComPtr<IMergeModules> modules;
  ThrowIfFailed("modules", catalog.get_MergeModules(modules.Put()));
  mmcat::ForEachItem<IMergeModule>(*modules, use);
}

template <class Interface>
void GetTexts(Interface& object,
              std::initializer_list<HRESULT (STDMETHODCALLTYPE Interface::*)(BSTR*)> properties) {
  for (const auto property : properties) {
    common::UniqueBstr value;
    ThrowIfFailed("text", (object.*property)(value.Put()));
  }
}

/// Reads every property of a module and of every row of its tables.
void GetEverything(IMergeModule& module) {
  using Module = IMergeModule;
  GetTexts<Module>(module, {&Module::get_ModuleID, &Module::get_Version, &Module::get_Author,
                            &Module::get_Comments, &Module::get_PackageCode, &Module::get_Subject});
  mmcat::ReadNumber(module, &Module::get_Language);
  mmcat::ForEachItem<IMMFile>(*mmcat::ReadObject(module, &Module::get_Files), [](IMMFile& file) {
    GetTexts<IMMFile>(file, {&IMMFile::get_Key, &IMMFile::get_Directory, &IMMFile::get_FileName,
                             &IMMFile::get_Version, &IMMFile::get_Language});
    mmcat::ReadNumber(file, &IMMFile::get_FileSize);
    mmcat::ReadNumber(file, &IMMFile::get_Sequence);
  });
  mmcat::ForEachItem<IMMDependency>(
      *mmcat::ReadObject(module, &Module::get_Dependencies), [](IMMDependency& dependency) {
        GetTexts<IMMDependency>(dependency,
                                {&IMMDependency::get_ModuleID, &IMMDependency::get_Version});
        mmcat::ReadNumber(dependency, &IMMDependency::get_Language);
      });
  mmcat::ForEachItem<IMMExclusion>(
      *mmcat::ReadObject(module, &Module::get_Exclusions), [](IMMExclusion& exclusion) {
        GetTexts<IMMExclusion>(exclusion,
                               {&IMMExclusion::get_ModuleID, &IMMExclusion::get_Language,
                                &IMMExclusion::get_MinVersion, &IMMExclusion::get_MaxVersion});
      });
  mmcat::ForEachItem<IMMCustomAction>(
      *mmcat::ReadObject(module, &Module::get_CustomActions), [](IMMCustomAction& action) {
        GetTexts<IMMCustomAction>(action, {&IMMCustomAction::get_Name});
      });
  mmcat::ForEachItem<IMMDialog>(
      *mmcat::ReadObject(module, &Module::get_Dialogs),
      [](IMMDialog& dialog) { GetTexts<IMMDialog>(dialog, {&IMMDialog::get_Name}); });
}

double Tables() {
  const auto catalog = NewCatalog();
  return Milliseconds([&] { ForEachRecord(*catalog, GetEverything); });
}

double ListCalls(const std::wstring& folder) {
  return Milliseconds([&] {
    ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
      const std::wstring path = folder + L'\\' + found.cFileName;
      const MSIHANDLE database = OpenDatabase(path);
      GetSignature(database);
      ::MsiCloseHandle(database);
      GetSummary(0, path.c_str());
    });
  });
}

/// Reads all rows of the tables that the interfaces return.
void GetTables(MSIHANDLE database) {
  static const ShownTable kTables[] = {
      {L"SELECT * FROM `Component`", {1, 3}, {}},
      {L"SELECT * FROM `File`", {1, 2, 3, 5, 6}, {4, 8}},
      {L"SELECT * FROM `ModuleDependency`", {3, 5}, {4}},
      {L"SELECT * FROM `ModuleExclusion`", {3, 5, 6}, {4}},
      {L"SELECT * FROM `CustomAction`", {1}, {}},
      {L"SELECT * FROM `Dialog`", {1}, {}},
  };
  for (const ShownTable& table : kTables) {
    GetRows(database, table);
  }
}

double TableCalls(const std::wstring& folder) {
  return ListCalls(folder) + Milliseconds([&] {
           ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
             const MSIHANDLE database = OpenDatabase(folder + L'\\' + found.cFileName);
             GetTables(database);
             ::MsiCloseHandle(database);
           });
         });
}

double PassCalls(const std::wstring& folder) {
  return Milliseconds([&] {
    ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
      const MSIHANDLE database = OpenDatabase(folder + L'\\' + found.cFileName);
      GetSignature(database);
      GetSummary(database, nullptr);
      GetTables(database);
      ::MsiCloseHandle(database);
    });
  });
}

constexpr int kRepetitions = 20;

double ListAgain() {
  const auto catalog = NewCatalog();
  return MedianMilliseconds([&] {
           for (int i = 0; i < kRepetitions; ++i) {
             ListModules(*catalog);
           }
         }) /
         kRepetitions;
}

double Pass(const std::wstring& folder) {
  std::vector<ListedFile> files;
  ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
    files.push_back({found.cFileName, found.ftLastWriteTime});
  });
  size_t changed = 0;
  const double time = MedianMilliseconds([&] {
    for (int i = 0; i < kRepetitions; ++i) {
      size_t position = 0;
      ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
        changed += ::CompareFileTime(&files[position++].lastWrite, &found.ftLastWriteTime) != 0;
      });
    }
  });
  if (changed != 0) {
    Fail("pass", static_cast<long>(changed));
  }
  return time / kRepetitions;
}

void Touch(const std::wstring& path) {
  HANDLE file =
      ::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  FILETIME time;
  ::GetFileTime(file, nullptr, nullptr, &time);
  time.dwLowDateTime ^= 0x04000000;
  ::SetFileTime(file, nullptr, nullptr, &time);
  ::CloseHandle(file);
}

double Changed(const std::wstring& folder) {
  const auto catalog = NewCatalog();
  ListModules(*catalog);
  const std::wstring path = folder + L"\\Module0015.msm";
  std::vector<double> times;
  for (int i = 0; i < 5; ++i) {
    Touch(path);
    times.push_back(Milliseconds([&] { ListModules(*catalog); }));
  }
  return Median(times);
}

double Find() {
  const auto catalog = NewCatalog();
  ListModules(*catalog);
  const common::UniqueBstr key(
      common::TryAllocateBstr(L"library0015.c685a6b2_5c68_494b_8b13_7777875e0015:1033"));
  return MedianMilliseconds([&] {
           for (int i = 0; i < kRepetitions; ++i) {
             common::ComPtr<IMergeModules> modules;
             long count = 0;
             ThrowIfFailed("find",
                           catalog->FindModule(key.Get(), nullptr, 0, modules.Put(), &count));
             if (count != 1) {
               Fail("find", count);
             }
           }
         }) /
         kRepetitions;
}

double Memory(const wchar_t* folder) {
  // Excludes what the first list allocates once for the process.
  Configure(L"");
  ListModules(*NewCatalog());
  Configure(folder);
  const auto catalog = NewCatalog();
  const size_t before = HeapBytes();
  ListModules(*catalog);
  return static_cast<double>(HeapBytes() - before) / Count(*catalog);
}

double MeasureFigure(const std::wstring& figure, const wchar_t* folder) {
  Configure(folder);
  if (figure == L"list")
    return FirstList();
  if (figure == L"list_calls")
    return ListCalls(folder);
  if (figure == L"tables")
    return Tables();
  if (figure == L"table_calls")
    return TableCalls(folder);
  if (figure == L"pass_calls")
    return PassCalls(folder);
  if (figure == L"again")
    return ListAgain();
  if (figure == L"pass")
    return Pass(folder);
  if (figure == L"changed")
    return Changed(folder);
  if (figure == L"find")
    return Find();
  if (figure == L"memory")
    return Memory(folder);
  Fail("unknown figure", 0);
}

}  // namespace

}  // namespace qm::bench

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) {
    std::fputs("usage: bench_catalog FIGURE FOLDER\n", stderr);
    return 2;
  }
  ::CoInitialize(nullptr);
  const std::wstring figure = argv[1];
  qm::bench::PrintRun(std::string(figure.begin(), figure.end()).c_str(),
                      qm::bench::MeasureFigure(figure, argv[2]));
  return 0;
}
