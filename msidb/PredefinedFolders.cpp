#include "msidb/PredefinedFolders.h"

#include <map>

#include "com/error/Raise.h"
#include "common/Bstr.h"
#include "common/DllLifetime.h"

namespace msidb {

namespace {

constexpr const wchar_t* kPredefinedRoots[] = {
    L"AdminToolsFolder", L"AppDataFolder",   L"CommonAppDataFolder", L"CommonFilesFolder",
    L"DesktopFolder",    L"FavoritesFolder", L"FontsFolder",         L"LocalAppDataFolder",
    L"MyPicturesFolder", L"PersonalFolder",  L"ProgramFilesFolder",  L"ProgramMenuFolder",
    L"SendToFolder",     L"StartMenuFolder", L"StartupFolder",       L"System16Folder",
    L"SystemFolder",     L"TempFolder",      L"TemplateFolder",      L"WindowsFolder",
    L"WindowsVolume"};

struct BstrLess {
  bool operator()(const CUniqueBstr& a, const CUniqueBstr& b) const noexcept {
    return ::VarBstrCmp(a.Get(), b.Get(), LOCALE_USER_DEFAULT, 0) ==
           static_cast<HRESULT>(VARCMP_LT);
  }
};

using RootMap = std::map<CUniqueBstr, const wchar_t*, BstrLess>;

RootMap MakeRootMap() {
  RootMap map;
  for (const wchar_t* const root : kPredefinedRoots) {
    CUniqueBstr key = MakeBstr(root);
    ::CharUpperBuffW(key.Get(), ::SysStringLen(key.Get()));
    map.emplace(std::move(key), root);
  }
  return map;
}

}  // namespace

const wchar_t* FindPredefinedRoot(const CWideString& upperCaseKey) {
  static CModuleWide<RootMap> theMap;
  const RootMap& map = theMap.Get([] { return new RootMap(MakeRootMap()); });
  const auto found = map.find(MakeBstr(upperCaseKey));
  return found == map.end() ? nullptr : found->second;
}

}  // namespace msidb
