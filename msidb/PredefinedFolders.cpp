#include "msidb/PredefinedFolders.h"

#include <map>

#include "com/error/Raise.h"
#include "common/Bstr.h"
#include "common/DllLifetime.h"

namespace qm::msidb {

namespace {

constexpr const wchar_t* kPredefinedRoots[] = {
    L"AdminToolsFolder", L"AppDataFolder",   L"CommonAppDataFolder", L"CommonFilesFolder",
    L"DesktopFolder",    L"FavoritesFolder", L"FontsFolder",         L"LocalAppDataFolder",
    L"MyPicturesFolder", L"PersonalFolder",  L"ProgramFilesFolder",  L"ProgramMenuFolder",
    L"SendToFolder",     L"StartMenuFolder", L"StartupFolder",       L"System16Folder",
    L"SystemFolder",     L"TempFolder",      L"TemplateFolder",      L"WindowsFolder",
    L"WindowsVolume"};

struct BstrLess {
  bool operator()(const common::UniqueBstr& a, const common::UniqueBstr& b) const noexcept {
    return ::VarBstrCmp(a.Get(), b.Get(), LOCALE_USER_DEFAULT, 0) ==
           static_cast<HRESULT>(VARCMP_LT);
  }
};

using RootMap = std::map<common::UniqueBstr, const wchar_t*, BstrLess>;

RootMap MakeRootMap() {
  RootMap map;
  for (const wchar_t* const root : kPredefinedRoots) {
    common::UniqueBstr key = com::AllocateBstr(root);
    ::CharUpperBuffW(key.Get(), ::SysStringLen(key.Get()));
    map.emplace(std::move(key), root);
  }
  return map;
}

}  // namespace

const wchar_t* FindPredefinedFolder(const common::WideString& upperCaseKey) {
  static common::DllWide<RootMap> theMap;
  const RootMap& map = theMap.Get([] { return new RootMap(MakeRootMap()); });
  const auto found = map.find(com::AllocateBstr(upperCaseKey));
  return found == map.end() ? nullptr : found->second;
}

}  // namespace qm::msidb
