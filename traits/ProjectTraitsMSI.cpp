#include "traits/ProjectTraitsMSI.h"

#include "traits/NameMatch.h"

namespace qm::traits {

namespace {

constexpr const wchar_t* kPredefinedFolders[] = {
    L"AdminToolsFolder",   L"AppDataFolder",       L"CommonAppDataFolder",
    L"CommonFilesFolder",  L"CommonFiles64Folder", L"DATABASEDIR",
    L"FavoritesFolder",    L"FontsFolder",         L"GlobalAssemblyCache",
    L"LocalAppDataFolder", L"MyPicturesFolder",    L"PersonalFolder",
    L"PrimaryVolumePath",  L"ProgramFilesFolder",  L"ProgramFiles64Folder",
    L"System16Folder",     L"SystemFolder",        L"System64Folder",
    L"TempFolder",         L"TemplateFolder",      L"WindowsFolder",
    L"WindowsVolume",      L"TARGETDIR",           L"ALLUSERSPROFILE",
    L"USERPROFILE"};

// This list is fixed, including the repeated name.
constexpr const wchar_t* kShellFolders[] = {L"DesktopFolder",     L"DesktopFolder",
                                            L"ProgramMenuFolder", L"SendToFolder",
                                            L"StartMenuFolder",   L"StartupFolder"};

}  // namespace

bool ProjectTraitsMSI::PredefinedFolderMatch(const common::WideString& name) const {
  return Contains(kPredefinedFolders, name) || ShellFolderMatch(name);
}

bool ProjectTraitsMSI::ShellFolderMatch(const common::WideString& name) const {
  return Contains(kShellFolders, name);
}

wchar_t ProjectTraitsMSI::OpenDelimiterChar() const { return L'['; }

wchar_t ProjectTraitsMSI::CloseDelimiterChar() const { return L']'; }

common::WideString ProjectTraitsMSI::OpenDelimiter() const { return L"["; }

common::WideString ProjectTraitsMSI::CloseDelimiter() const { return L"]"; }

common::WideString ProjectTraitsMSI::InstallDirProperty() const { return L"INSTALLDIR"; }

common::WideString ProjectTraitsMSI::InstallDirReference() const { return L"[INSTALLDIR]"; }

common::WideString ProjectTraitsMSI::SystemFolderReference() const { return L"[SystemFolder]"; }

common::WideString ProjectTraitsMSI::SystemFolderDisplay() const { return L"[SystemFolder]"; }

common::WideString ProjectTraitsMSI::WindowsFolderReference() const { return L"[WindowsFolder]"; }

common::WideString ProjectTraitsMSI::WindowsFolderDisplay() const { return L"[WindowsFolder]"; }

common::WideString ProjectTraitsMSI::ProgramFilesReference() const {
  return L"[ProgramFilesFolder]";
}

common::WideString ProjectTraitsMSI::ProgramFilesDisplay() const { return L"[ProgramFilesFolder]"; }

common::WideString ProjectTraitsMSI::CommonFilesReference() const { return L"[CommonFilesFolder]"; }

common::WideString ProjectTraitsMSI::CommonFilesDisplay() const { return L"[CommonFilesFolder]"; }

common::WideString ProjectTraitsMSI::SupportDirReference() const { return {}; }

common::WideString ProjectTraitsMSI::RuntimeTextSubsReference() const { return {}; }

common::WideString ProjectTraitsMSI::TaskBarFolderReference() const { return L"[TaskBarFolder]"; }

common::WideString ProjectTraitsMSI::StartMenuFolderReference() const {
  return L"[StartMenuFolder]";
}

common::WideString ProjectTraitsMSI::SendToFolderReference() const { return L"[SendToFolder]"; }

common::WideString ProjectTraitsMSI::ProgramMenuFolderReference() const {
  return L"[ProgramMenuFolder]";
}

common::WideString ProjectTraitsMSI::StartupFolderReference() const { return L"[StartupFolder]"; }

common::WideString ProjectTraitsMSI::DesktopFolderReference() const { return L"[DesktopFolder]"; }

int ProjectTraitsMSI::TraitsKindCode() const { return 2; }

}  // namespace qm::traits
