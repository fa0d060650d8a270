// bench_set FIGURE FOLDER: measures one figure of sets of modules, or a baseline, over a folder of
// modules and prints it. Times are in milliseconds.
//
//   set_load   MergeSet.Load of a catalog that is listed already: every table of every module
//   set_first  MergeSet.Load of a new catalog, which is listed meanwhile
//   set_calls  their baseline: the installer calls for every table of every module, in one pass
//   set_check  MergeSet.Check of a loaded set
//   set_plan   MergeSet.Plan of the module with the most requirements
//   set_find   MergeSet.FindFiles with a pattern
//   set_loop   its baseline: a loop over the file names that compares each with the pattern

#include <windows.h>
// The headers below need its types.
#include <msi.h>
#include <msidefs.h>
#include <msiquery.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "bench/Objects.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "idl/mergeset.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "merge/FileSearch.h"
#include "text/Utf.h"

namespace qm::bench {

namespace {

constexpr wchar_t kPattern[] = L"*b*1?.d?l";

/// A set, and the collection that it is loaded with.
struct Set {
  common::ComPtr<IMMCatalogVelmora> catalog =
      NewObject<IMMCatalogVelmora>(L"QmMMUpdater2.dll", CLSID_MMCatalog);
  common::ComPtr<IMergeSet> set = NewObject<IMergeSet>(L"QmMergeSet.dll", CLSID_MergeSet);
  common::ComPtr<IMergeModules> modules;

  Set() { ThrowIfFailed("modules", catalog->get_MergeModules(modules.Put())); }
  void Load() const { ThrowIfFailed("load", set->Load(modules.Get())); }
};

double Load() {
  const Set set;
  return Milliseconds([&] { set.Load(); });
}

double LoadFirst() {
  const auto catalog = NewObject<IMMCatalogVelmora>(L"QmMMUpdater2.dll", CLSID_MMCatalog);
  const auto set = NewObject<IMergeSet>(L"QmMergeSet.dll", CLSID_MergeSet);
  return Milliseconds([&] { ThrowIfFailed("load", set->Load(catalog.Get())); });
}

double Check() {
  const Set set;
  set.Load();
  VARIANT all;
  all.vt = VT_ERROR;
  all.scode = DISP_E_PARAMNOTFOUND;
  return Milliseconds([&] {
    common::ComPtr<ISetFindings> findings;
    ThrowIfFailed("check", set.set->Check(all, findings.Put()));
    long count = 0;
    findings->get_Count(&count);
  });
}

/// Returns the key of the module with the most requirements.
common::UniqueBstr FindHub(IMergeSet& set) {
  common::ComPtr<ISetModules> modules;
  ThrowIfFailed("modules", set.get_Modules(modules.Put()));
  long count = 0;
  modules->get_Count(&count);
  common::UniqueBstr hub;
  long most = 0;
  VARIANT index;
  index.vt = VT_I4;
  for (index.lVal = 1; index.lVal <= count; ++index.lVal) {
    common::ComPtr<ISetModule> module;
    common::ComPtr<ISetRequirements> requirements;
    long found = 0;
    ThrowIfFailed("module", modules->get_Item(index, module.Put()));
    ThrowIfFailed("requirements", module->get_Requirements(requirements.Put()));
    requirements->get_Count(&found);
    if (found > most) {
      most = found;
      ThrowIfFailed("key", module->get_Key(hub.Put()));
    }
  }
  return hub;
}

double Plan() {
  const Set set;
  set.Load();
  const common::UniqueBstr hub = FindHub(*set.set);
  VARIANT key;
  key.vt = VT_BSTR;
  key.bstrVal = hub.Get();
  return Milliseconds([&] {
    common::ComPtr<IMergePlan> plan;
    common::ComPtr<IPlannedModules> modules;
    long count = 0;
    ThrowIfFailed("plan", set.set->Plan(key, plan.Put()));
    ThrowIfFailed("plan", plan->get_Modules(modules.Put()));
    modules->get_Count(&count);
    if (count == 0) {
      Fail("plan", 0);
    }
  });
}

common::ComPtr<ISetFiles> FindFiles(IMergeSet& set, const wchar_t* pattern) {
  const common::UniqueBstr text(common::TryAllocateBstr(pattern));
  common::ComPtr<ISetFiles> files;
  ThrowIfFailed("find", set.FindFiles(text.Get(), files.Put()));
  return files;
}

double Find() {
  const Set set;
  set.Load();
  return MedianMilliseconds([&] {
    long count = 0;
    FindFiles(*set.set, kPattern)->get_Count(&count);
    if (count == 0) {
      Fail("find", 0);
    }
  });
}

/// The long and short names of all files of a set.
std::vector<std::string> ReadNames(IMergeSet& set) {
  std::vector<std::string> names;
  const common::ComPtr<ISetFiles> files = FindFiles(set, L"");
  long count = 0;
  files->get_Count(&count);
  VARIANT index;
  index.vt = VT_I4;
  for (index.lVal = 1; index.lVal <= count; ++index.lVal) {
    common::ComPtr<ISetFile> file;
    ThrowIfFailed("file", files->get_Item(index, file.Put()));
    for (const auto property : {&ISetFile::get_Name, &ISetFile::get_ShortName}) {
      common::UniqueBstr name;
      ThrowIfFailed("name", (file.Get()->*property)(name.Put()));
      names.push_back(text::ToUtf8(common::ViewOf(name.Get())));
    }
  }
  return names;
}

double Loop() {
  const Set set;
  set.Load();
  const std::vector<std::string> names = ReadNames(*set.set);
  const std::string pattern = text::ToUtf8(std::wstring_view(kPattern));
  std::string lower;
  return MedianMilliseconds([&] {
    size_t found = 0;
    for (const std::string& name : names) {
      lower = name;
      for (char& character : lower) {
        character =
            character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
      }
      found += merge::MatchesPattern(lower, pattern);
    }
    if (found == 0) {
      Fail("loop", 0);
    }
  });
}

/// A buffer for any text of a module, so that the baseline allocates nothing itself.
wchar_t g_text[4096];

std::wstring GetString(MSIHANDLE record, UINT field) {
  DWORD length = static_cast<DWORD>(std::size(g_text));
  Require("string", ::MsiRecordGetStringW(record, field, g_text, &length));
  return {g_text, length};
}

/// Reads all cells of a table. Of binary data, it reads only the size.
void ReadTable(MSIHANDLE database, const std::wstring& name) {
  MSIHANDLE view = 0;
  MSIHANDLE types = 0;
  MSIHANDLE names = 0;
  MSIHANDLE row = 0;
  Require("view",
          ::MsiDatabaseOpenViewW(database, (L"SELECT * FROM `" + name + L"`").c_str(), &view));
  Require("columns", ::MsiViewGetColumnInfo(view, MSICOLINFO_NAMES, &names));
  Require("columns", ::MsiViewGetColumnInfo(view, MSICOLINFO_TYPES, &types));
  std::vector<wchar_t> kinds;
  for (UINT field = 1; field <= ::MsiRecordGetFieldCount(types); ++field) {
    GetString(names, field);
    kinds.push_back(GetString(types, field)[0]);
  }
  ::MsiCloseHandle(types);
  ::MsiCloseHandle(names);
  Require("execute", ::MsiViewExecute(view, 0));
  while (::MsiViewFetch(view, &row) == ERROR_SUCCESS) {
    for (UINT field = 1; field <= kinds.size(); ++field) {
      const wchar_t kind = kinds[field - 1];
      if (kind == L'v' || kind == L'V') {
        ::MsiRecordDataSize(row, field);
      } else if (kind == L'i' || kind == L'I') {
        ::MsiRecordGetInteger(row, field);
      } else {
        DWORD length = static_cast<DWORD>(std::size(g_text));
        ::MsiRecordGetStringW(row, field, g_text, &length);
      }
    }
    ::MsiCloseHandle(row);
  }
  ::MsiCloseHandle(view);
}

void ReadModule(const std::wstring& path) {
  MSIHANDLE database = 0;
  MSIHANDLE summary = 0;
  MSIHANDLE view = 0;
  MSIHANDLE row = 0;
  Require("open", ::MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_READONLY, &database));
  Require("summary", ::MsiGetSummaryInformationW(database, nullptr, 0, &summary));
  for (const UINT property :
       {PID_SUBJECT, PID_AUTHOR, PID_COMMENTS, PID_TEMPLATE, PID_REVNUMBER, PID_PAGECOUNT}) {
    UINT type = 0;
    INT number = 0;
    FILETIME time;
    DWORD length = static_cast<DWORD>(std::size(g_text));
    ::MsiSummaryInfoGetPropertyW(summary, property, &type, &number, &time, g_text, &length);
  }
  ::MsiCloseHandle(summary);
  Require("view", ::MsiDatabaseOpenViewW(database, L"SELECT `Name` FROM `_Tables`", &view));
  Require("execute", ::MsiViewExecute(view, 0));
  std::vector<std::wstring> tables;
  while (::MsiViewFetch(view, &row) == ERROR_SUCCESS) {
    tables.push_back(GetString(row, 1));
    ::MsiCloseHandle(row);
  }
  ::MsiCloseHandle(view);
  for (const std::wstring& table : tables) {
    ReadTable(database, table);
  }
  ::MsiCloseHandle(database);
}

double Calls(const std::wstring& folder) {
  return Milliseconds([&] {
    ForEachModule(folder, [&](const WIN32_FIND_DATAW& found) {
      ReadModule(folder + L'\\' + found.cFileName);
    });
  });
}

double MeasureFigure(const std::wstring& figure, const wchar_t* folder) {
  if (figure == L"set_load")
    return Load();
  if (figure == L"set_first")
    return LoadFirst();
  if (figure == L"set_calls")
    return Calls(folder);
  if (figure == L"set_check")
    return Check();
  if (figure == L"set_plan")
    return Plan();
  if (figure == L"set_find")
    return Find();
  if (figure == L"set_loop")
    return Loop();
  Fail("unknown figure", 0);
}

}  // namespace

}  // namespace qm::bench

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) {
    std::fputs("usage: bench_set FIGURE FOLDER\n", stderr);
    return 2;
  }
  ::CoInitialize(nullptr);
  const std::wstring figure = argv[1];
  qm::bench::PrintRun(std::string(figure.begin(), figure.end()).c_str(),
                      qm::bench::MeasureFigure(figure, argv[2]));
  return 0;
}
