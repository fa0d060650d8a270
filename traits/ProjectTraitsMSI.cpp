#include "traits/ProjectTraitsMSI.h"

#include "traits/NameMatch.h"

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

// Kept as given, with one name twice.
constexpr const wchar_t* kShellFolders[] = {L"DesktopFolder",     L"DesktopFolder",
                                            L"ProgramMenuFolder", L"SendToFolder",
                                            L"StartMenuFolder",   L"StartupFolder"};

}  // namespace

bool ProjectTraitsMSI::PredefinedFolderMatch(const CWideString& name) const {
  return IsInList(kPredefinedFolders, name) || ShellFolderMatch(name);
}

bool ProjectTraitsMSI::ShellFolderMatch(const CWideString& name) const {
  return IsInList(kShellFolders, name);
}

wchar_t ProjectTraitsMSI::OpenDelimiterChar() const { return L'['; }

wchar_t ProjectTraitsMSI::CloseDelimiterChar() const { return L']'; }

CWideString ProjectTraitsMSI::OpenDelimiter() const { return L"["; }

CWideString ProjectTraitsMSI::CloseDelimiter() const { return L"]"; }

CWideString ProjectTraitsMSI::InstallDirProperty() const { return L"INSTALLDIR"; }

CWideString ProjectTraitsMSI::InstallDirReference() const { return L"[INSTALLDIR]"; }

CWideString ProjectTraitsMSI::SystemFolderReference() const { return L"[SystemFolder]"; }

CWideString ProjectTraitsMSI::SystemFolderDisplay() const { return L"[SystemFolder]"; }

CWideString ProjectTraitsMSI::WindowsFolderReference() const { return L"[WindowsFolder]"; }

CWideString ProjectTraitsMSI::WindowsFolderDisplay() const { return L"[WindowsFolder]"; }

CWideString ProjectTraitsMSI::ProgramFilesReference() const { return L"[ProgramFilesFolder]"; }

CWideString ProjectTraitsMSI::ProgramFilesDisplay() const { return L"[ProgramFilesFolder]"; }

CWideString ProjectTraitsMSI::CommonFilesReference() const { return L"[CommonFilesFolder]"; }

CWideString ProjectTraitsMSI::CommonFilesDisplay() const { return L"[CommonFilesFolder]"; }

CWideString ProjectTraitsMSI::SupportDirReference() const { return {}; }

CWideString ProjectTraitsMSI::RuntimeTextSubsReference() const { return {}; }

CWideString ProjectTraitsMSI::TaskBarFolderReference() const { return L"[TaskBarFolder]"; }

CWideString ProjectTraitsMSI::StartMenuFolderReference() const { return L"[StartMenuFolder]"; }

CWideString ProjectTraitsMSI::SendToFolderReference() const { return L"[SendToFolder]"; }

CWideString ProjectTraitsMSI::ProgramMenuFolderReference() const { return L"[ProgramMenuFolder]"; }

CWideString ProjectTraitsMSI::StartupFolderReference() const { return L"[StartupFolder]"; }

CWideString ProjectTraitsMSI::DesktopFolderReference() const { return L"[DesktopFolder]"; }

int ProjectTraitsMSI::TraitsKindCode() const { return 2; }
