#include "traits/DefaultDirectories.h"

#include <algorithm>
#include <iterator>

#include "com/error/Raise.h"
#include "traits/ProjectTraits.h"

namespace qm::traits {

namespace {

struct DefaultDirectory {
  const wchar_t* key;
  const wchar_t* defaultDir;
};

constexpr DefaultDirectory kDefaultDirectories[] = {
    {L"AdminToolsFolder", L"Admint~1|AdminTools"},
    {L"AppDataFolder", L"APPLIC~1|Application Data"},
    {L"CommonAppDataFolder", L"Common~1|Common Application Data"},
    {L"CommonFilesFolder", L"Common"},
    {L"CommonFiles64Folder", L"Common64"},
    {L"DATABASEDIR", L"Database"},
    {L"DesktopFolder", L"Desktop"},
    {L"FavoritesFolder", L"Favori~1|Favorites"},
    {L"FontsFolder", L"Fonts"},
    {L"GlobalAssemblyCache", L"Global~1|GlobalAssemblyCache"},
    {L"LocalAppDataFolder", L"LocalA~1|Local Application Data"},
    {L"MyPicturesFolder", L"MyPict~1|My Pictures"},
    {L"PersonalFolder", L"Personal"},
    {L"PrimaryVolumePath", L"Primar~1|PrimaryVolumePath"},
    {L"ProgramFilesFolder", L"Progra~1|Program Files"},
    {L"ProgramFiles64Folder", L"Prog64~1|Program Files 64"},
    {L"ProgramMenuFolder", L"Programs"},
    {L"RecentFolder", L"Recent"},
    {L"SendToFolder", L"SendTo"},
    {L"StartMenuFolder", L"StartM~1|Start Menu"},
    {L"StartupFolder", L"StartUp"},
    {L"System16Folder", L"System"},
    {L"SystemFolder", L"System32"},
    {L"System64Folder", L"System64"},
    {L"TempFolder", L"Temp"},
    {L"TemplateFolder", L"ShellNew"},
    {L"WindowsFolder", L"Windows"},
    {L"WindowsVolume", L"WinRoot"},
    {L"TARGETDIR", L"SourceDir"},
    {L"ALLUSERSPROFILE", L"ALLUSE~1|All Users"},
    {L"USERPROFILE", L"USERPR~1|UserProfile"},
    {L"IISROOTFOLDER", L"IISRoo~1|IISRootFolder"},
};

/// All but the last entry, whose folder belongs to the web server and not to the installer.
constexpr size_t kReferenceCount = std::size(kDefaultDirectories) - 1;

const DefaultDirectory* Find(const common::WideString& key, size_t count) noexcept {
  const DefaultDirectory* const end = kDefaultDirectories + count;
  const DefaultDirectory* const found = std::find_if(
      kDefaultDirectories, end, [&](const DefaultDirectory& entry) { return key == entry.key; });
  return found == end ? nullptr : found;
}

}  // namespace

common::WideString GetDefaultDir(const common::WideString& key,
                                 const common::WideString& fallback) {
  if (const DefaultDirectory* const entry = Find(key, std::size(kDefaultDirectories))) {
    return entry->defaultDir;
  }
  if (fallback.empty()) {
    com::Raise(com_exception(kUnknownPredefinedFolder,
                             common::WideString(L"There is no predefined folder ") + key + L"."));
  }
  return fallback;
}

common::WideString PredefinedFolderReference(const common::WideString& key,
                                             const ProjectTraits& traits) {
  return Find(key, kReferenceCount) ? traits.OpenDelimiter() + key + traits.CloseDelimiter()
                                    : common::WideString();
}

}  // namespace qm::traits
