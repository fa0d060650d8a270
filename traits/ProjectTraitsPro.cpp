#include "traits/ProjectTraitsPro.h"

#include "traits/NameMatch.h"

namespace {

constexpr const wchar_t* kPredefinedFolders[] = {
    L"COMMONFILES",    L"COMMONFILES64", L"QMRUNTIMETEXTSUBS", L"PROGRAMFILES",
    L"PROGRAMFILES64", L"SUPPORTDIR",    L"WINSYSDIR",         L"WINSYSDIR64",
    L"TARGETDIR",      L"WINDIR",        L"FOLDER_FONTS"};

constexpr const wchar_t* kShellFolders[] = {L"DesktopFolder", L"ProgramMenuFolder",
                                            L"StartMenuFolder", L"StartupFolder"};

}  // namespace

bool ProjectTraitsPro::PredefinedFolderMatch(const CWideString& name) const {
  return IsInList(kPredefinedFolders, name) || ShellFolderMatch(name);
}

bool ProjectTraitsPro::ShellFolderMatch(const CWideString& name) const {
  return IsInList(kShellFolders, name);
}

wchar_t ProjectTraitsPro::OpenDelimiterChar() const { return L'<'; }

wchar_t ProjectTraitsPro::CloseDelimiterChar() const { return L'>'; }

CWideString ProjectTraitsPro::OpenDelimiter() const { return L"<"; }

CWideString ProjectTraitsPro::CloseDelimiter() const { return L">"; }

CWideString ProjectTraitsPro::InstallDirProperty() const { return L"TARGETDIR"; }

CWideString ProjectTraitsPro::InstallDirReference() const { return L"<TARGETDIR>"; }

CWideString ProjectTraitsPro::SystemFolderReference() const { return L"<WINSYSDIR>"; }

CWideString ProjectTraitsPro::SystemFolderDisplay() const { return L"Windows System"; }

CWideString ProjectTraitsPro::WindowsFolderReference() const { return L"<WINDIR>"; }

CWideString ProjectTraitsPro::WindowsFolderDisplay() const { return L"Windows"; }

CWideString ProjectTraitsPro::ProgramFilesReference() const { return L"<PROGRAMFILES>"; }

CWideString ProjectTraitsPro::ProgramFilesDisplay() const { return L"Program Files"; }

CWideString ProjectTraitsPro::CommonFilesReference() const { return L"<COMMONFILES>"; }

CWideString ProjectTraitsPro::CommonFilesDisplay() const { return L"Common Files"; }

CWideString ProjectTraitsPro::SupportDirReference() const { return L"<SUPPORTDIR>"; }

CWideString ProjectTraitsPro::RuntimeTextSubsReference() const { return L"<QMRUNTIMETEXTSUBS>"; }

CWideString ProjectTraitsPro::TaskBarFolderReference() const { return L"<TaskBarFolder>"; }

CWideString ProjectTraitsPro::StartMenuFolderReference() const { return L"<StartMenuFolder>"; }

CWideString ProjectTraitsPro::SendToFolderReference() const { return L"<SendToFolder>"; }

CWideString ProjectTraitsPro::ProgramMenuFolderReference() const { return L"<ProgramMenuFolder>"; }

CWideString ProjectTraitsPro::StartupFolderReference() const { return L"<StartupFolder>"; }

CWideString ProjectTraitsPro::DesktopFolderReference() const { return L"<DesktopFolder>"; }

int ProjectTraitsPro::TraitsKindCode() const { return 4; }
