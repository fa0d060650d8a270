#include "traits/ProjectTraitsPro.h"

#include "traits/NameMatch.h"

namespace qm::traits {

namespace {

constexpr const wchar_t* kPredefinedFolders[] = {
    L"COMMONFILES",    L"COMMONFILES64", L"QMRUNTIMETEXTSUBS", L"PROGRAMFILES",
    L"PROGRAMFILES64", L"SUPPORTDIR",    L"WINSYSDIR",         L"WINSYSDIR64",
    L"TARGETDIR",      L"WINDIR",        L"FOLDER_FONTS"};

constexpr const wchar_t* kShellFolders[] = {L"DesktopFolder", L"ProgramMenuFolder",
                                            L"StartMenuFolder", L"StartupFolder"};

}  // namespace

bool ProjectTraitsPro::PredefinedFolderMatch(const common::WideString& name) const {
  return Contains(kPredefinedFolders, name) || ShellFolderMatch(name);
}

bool ProjectTraitsPro::ShellFolderMatch(const common::WideString& name) const {
  return Contains(kShellFolders, name);
}

wchar_t ProjectTraitsPro::OpenDelimiterChar() const { return L'<'; }

wchar_t ProjectTraitsPro::CloseDelimiterChar() const { return L'>'; }

common::WideString ProjectTraitsPro::OpenDelimiter() const { return L"<"; }

common::WideString ProjectTraitsPro::CloseDelimiter() const { return L">"; }

common::WideString ProjectTraitsPro::InstallDirProperty() const { return L"TARGETDIR"; }

common::WideString ProjectTraitsPro::InstallDirReference() const { return L"<TARGETDIR>"; }

common::WideString ProjectTraitsPro::SystemFolderReference() const { return L"<WINSYSDIR>"; }

common::WideString ProjectTraitsPro::SystemFolderDisplay() const { return L"Windows System"; }

common::WideString ProjectTraitsPro::WindowsFolderReference() const { return L"<WINDIR>"; }

common::WideString ProjectTraitsPro::WindowsFolderDisplay() const { return L"Windows"; }

common::WideString ProjectTraitsPro::ProgramFilesReference() const { return L"<PROGRAMFILES>"; }

common::WideString ProjectTraitsPro::ProgramFilesDisplay() const { return L"Program Files"; }

common::WideString ProjectTraitsPro::CommonFilesReference() const { return L"<COMMONFILES>"; }

common::WideString ProjectTraitsPro::CommonFilesDisplay() const { return L"Common Files"; }

common::WideString ProjectTraitsPro::SupportDirReference() const { return L"<SUPPORTDIR>"; }

common::WideString ProjectTraitsPro::RuntimeTextSubsReference() const {
  return L"<QMRUNTIMETEXTSUBS>";
}

common::WideString ProjectTraitsPro::TaskBarFolderReference() const { return L"<TaskBarFolder>"; }

common::WideString ProjectTraitsPro::StartMenuFolderReference() const {
  return L"<StartMenuFolder>";
}

common::WideString ProjectTraitsPro::SendToFolderReference() const { return L"<SendToFolder>"; }

common::WideString ProjectTraitsPro::ProgramMenuFolderReference() const {
  return L"<ProgramMenuFolder>";
}

common::WideString ProjectTraitsPro::StartupFolderReference() const { return L"<StartupFolder>"; }

common::WideString ProjectTraitsPro::DesktopFolderReference() const { return L"<DesktopFolder>"; }

int ProjectTraitsPro::TraitsKindCode() const { return 4; }

}  // namespace qm::traits
