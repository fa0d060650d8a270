// bench_catalog FIGURE FOLDER: measures one figure of the catalog, or of its baseline, over a
// folder of modules and prints it. The figures of one process would disturb each other, so each has
// its own; the script that makes the table of them is bench/catalog.
//
//   cold      milliseconds of the first list of a process
//   calls     its baseline: the installer calls for each module, and nothing else
//   warm      milliseconds of a list when nothing changed
//   pass      its baseline: FindFirstFileW/FindNextFileW and CompareFileTime
//   changed   milliseconds of a list when one file was rewritten
//   find      milliseconds of FindModule
//   tables    milliseconds of the first list of a process and of every table of its modules
//   which     milliseconds of mmcat's search for a pattern in all File tables, after they were read
//   memory    bytes of heap for each module

#include <windows.h>
// Before the headers that need its types.
#include <msi.h>
#include <msidefs.h>
#include <msiquery.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench/HeapBytes.h"
#include "bench/Measure.h"
#include "client/catalog/CatalogFacts.h"
#include "client/catalog/Properties.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "merge/FileSearch.h"

namespace {

struct ListedFile {
  std::wstring name;
  FILETIME lastWrite;
};

[[noreturn]] void Fail(const char* what, long code) {
  std::fprintf(stderr, "bench_catalog: %s: 0x%08lX\n", what, static_cast<unsigned long>(code));
  std::exit(1);
}

void Check(const char* what, HRESULT hr) {
  if (FAILED(hr)) {
    Fail(what, hr);
  }
}

/// Has the application services name this folder and nothing else.
void Configure(const wchar_t* folder) {
  ::SetEnvironmentVariableW(L"QM_MODULE_PATH", folder);
  for (const wchar_t* name : {L"QM_USER_MODULE_PATH", L"QM_GALLERY_ROOT", L"QM_DATA_DIR",
                              L"QM_FILE_INDEX_DIR", L"QM_MODULE_INDEX_DIR"}) {
    ::SetEnvironmentVariableW(name, L"");
  }
}

CComPtr<IMMCatalogVelmora> NewCatalog() {
  wchar_t path[MAX_PATH];
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  *std::wcsrchr(path, L'\\') = L'\0';
  const HMODULE server =
      ::LoadLibraryW((std::wstring(path) + L"\\..\\..\\bin\\QmMMUpdater2.dll").c_str());
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(::GetProcAddress(server, "DllGetClassObject")));
  CComPtr<IClassFactory> factory;
  CComPtr<IMMCatalogVelmora> catalog;
  Check("class object", getClassObject(CLSID_MMCatalog, __uuidof(IClassFactory),
                                       reinterpret_cast<void**>(factory.Put())));
  Check("catalog", factory->CreateInstance(nullptr, __uuidof(IMMCatalogVelmora),
                                           reinterpret_cast<void**>(catalog.Put())));
  return catalog;
}

void List(IMMCatalogVelmora& catalog) {
  CComPtr<IMergeModules> modules;
  Check("modules", catalog.get_MergeModules(modules.Put()));
}

long Count(IMMCatalogVelmora& catalog) {
  CComPtr<IMergeModules> modules;
  long count = 0;
  Check("modules", catalog.get_MergeModules(modules.Put()));
  modules->get_Count(&count);
  return count;
}

template <class Use>
void ForEachModule(const std::wstring& folder, Use use) {
  WIN32_FIND_DATAW found;
  HANDLE find = ::FindFirstFileW((folder + L"\\*.msm").c_str(), &found);
  if (find == INVALID_HANDLE_VALUE) {
    Fail("folder", static_cast<long>(::GetLastError()));
  }
  do {
    use(found);
  } while (::FindNextFileW(find, &found));
  ::FindClose(find);
}

void Require(const char* what, UINT result) {
  if (result != ERROR_SUCCESS) {
    Fail(what, static_cast<long>(result));
  }
}

/// The calls that a record needs, with fixed buffers.
void MakeInstallerCalls(const std::wstring& path) {
  wchar_t text[260];
  DWORD length = 260;
  MSIHANDLE database = 0, view = 0, row = 0, summary = 0;
  Require("open", ::MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_READONLY, &database));
  Require("view", ::MsiDatabaseOpenViewW(database, L"SELECT * FROM ModuleSignature", &view));
  Require("execute", ::MsiViewExecute(view, 0));
  Require("fetch", ::MsiViewFetch(view, &row));
  ::MsiRecordGetInteger(row, 2);
  for (const UINT column : {1u, 3u}) {
    length = 260;
    Require("string", ::MsiRecordGetStringW(row, column, text, &length));
  }
  ::MsiCloseHandle(row);
  ::MsiCloseHandle(view);
  ::MsiCloseHandle(database);
  Require("summary", ::MsiGetSummaryInformationW(0, path.c_str(), 0, &summary));
  for (const UINT property : {PID_AUTHOR, PID_COMMENTS, PID_REVNUMBER, PID_SUBJECT}) {
    UINT type = 0;
    INT number = 0;
    FILETIME time;
    length = 260;
    Require("property",
            ::MsiSummaryInfoGetPropertyW(summary, property, &type, &number, &time, text, &length));
  }
  ::MsiCloseHandle(summary);
}

double Cold() {
  const auto catalog = NewCatalog();
  return Milliseconds([&] { List(*catalog); });
}

template <class Use>
void ForEachRecord(IMMCatalogVelmora& catalog, Use use) {
  CComPtr<IMergeModules> modules;
  Check("modules", catalog.get_MergeModules(modules.Put()));
  ForEach<IMergeModule>(*modules, use);
}

double Tables() {
  const auto catalog = NewCatalog();
  return Milliseconds([&] {
    ForEachRecord(*catalog, [](IMergeModule& module) {
      Get(module, &IMergeModule::get_Files);
      Get(module, &IMergeModule::get_Dependencies);
      Get(module, &IMergeModule::get_Exclusions);
      Get(module, &IMergeModule::get_CustomActions);
      Get(module, &IMergeModule::get_Dialogs);
    });
  });
}

double Which() {
  std::vector<CheckedModule> modules;
  ForEachRecord(*NewCatalog(),
                [&](IMergeModule& module) { modules.emplace_back().files = ReadFiles(module); });
  return MedianMilliseconds([&] {
    if (FindFiles(modules, "*B*1?.d?l").empty()) {
      Fail("which", 0);
    }
  });
}

double Calls(const std::wstring& folder) {
  return Milliseconds([&] {
    ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
      MakeInstallerCalls(folder + L'\\' + found.cFileName);
    });
  });
}

constexpr int kRepetitions = 20;

double Warm() {
  const auto catalog = NewCatalog();
  return MedianMilliseconds([&] {
           for (int i = 0; i < kRepetitions; ++i) {
             List(*catalog);
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
  return changed ? -1 : time / kRepetitions;
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
  List(*catalog);
  const std::wstring path = folder + L"\\Module0015.msm";
  std::vector<double> times;
  for (int i = 0; i < 5; ++i) {
    Touch(path);
    times.push_back(Milliseconds([&] { List(*catalog); }));
  }
  return Median(times);
}

double Find() {
  const auto catalog = NewCatalog();
  List(*catalog);
  const CUniqueBstr key(AllocBstr(L"library0015.c685a6b2_5c68_494b_8b13_7777875e0015:1033"));
  return MedianMilliseconds([&] {
           for (int i = 0; i < kRepetitions; ++i) {
             CComPtr<IMergeModules> modules;
             long count = 0;
             Check("find", catalog->FindModule(key.Get(), nullptr, 0, modules.Put(), &count));
             if (count != 1) {
               Fail("find", count);
             }
           }
         }) /
         kRepetitions;
}

double Memory(const wchar_t* folder) {
  // What a first list makes once for the process does not count.
  Configure(L"");
  List(*NewCatalog());
  Configure(folder);
  const auto catalog = NewCatalog();
  const size_t before = HeapBytes();
  List(*catalog);
  return static_cast<double>(HeapBytes() - before) / Count(*catalog);
}

double MeasureFigure(const std::wstring& figure, const wchar_t* folder) {
  Configure(folder);
  if (figure == L"cold")
    return Cold();
  if (figure == L"calls")
    return Calls(folder);
  if (figure == L"warm")
    return Warm();
  if (figure == L"pass")
    return Pass(folder);
  if (figure == L"changed")
    return Changed(folder);
  if (figure == L"find")
    return Find();
  if (figure == L"tables")
    return Tables();
  if (figure == L"which")
    return Which();
  if (figure == L"memory")
    return Memory(folder);
  return -1;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) {
    std::fputs("usage: bench_catalog FIGURE FOLDER\n", stderr);
    return 2;
  }
  ::CoInitialize(nullptr);
  std::printf("%.4f\n", MeasureFigure(argv[1], argv[2]));
  return 0;
}
