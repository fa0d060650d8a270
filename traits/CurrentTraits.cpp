#include "traits/CurrentTraits.h"

#include "traits/ProjectTraitsManager.h"

namespace qm::traits::current {

namespace {

const ProjectTraits& Current() { return CProjectTraitsManager::Instance().Current(); }

}  // namespace

bool PredefinedFolderMatch(const common::WideString& name) {
  return Current().PredefinedFolderMatch(name);
}

bool ShellFolderMatch(const common::WideString& name) { return Current().ShellFolderMatch(name); }

wchar_t OpenDelimiterChar() { return Current().OpenDelimiterChar(); }

wchar_t CloseDelimiterChar() { return Current().CloseDelimiterChar(); }

common::WideString OpenDelimiter() { return Current().OpenDelimiter(); }

common::WideString CloseDelimiter() { return Current().CloseDelimiter(); }

common::WideString InstallDirProperty() { return Current().InstallDirProperty(); }

common::WideString InstallDirReference() { return Current().InstallDirReference(); }

common::WideString SystemFolderReference() { return Current().SystemFolderReference(); }

common::WideString SystemFolderDisplay() { return Current().SystemFolderDisplay(); }

common::WideString WindowsFolderReference() { return Current().WindowsFolderReference(); }

common::WideString WindowsFolderDisplay() { return Current().WindowsFolderDisplay(); }

common::WideString ProgramFilesReference() { return Current().ProgramFilesReference(); }

common::WideString ProgramFilesDisplay() { return Current().ProgramFilesDisplay(); }

common::WideString CommonFilesReference() { return Current().CommonFilesReference(); }

common::WideString CommonFilesDisplay() { return Current().CommonFilesDisplay(); }

common::WideString SupportDirReference() { return Current().SupportDirReference(); }

common::WideString RuntimeTextSubsReference() { return Current().RuntimeTextSubsReference(); }

common::WideString TaskBarFolderReference() { return Current().TaskBarFolderReference(); }

common::WideString StartMenuFolderReference() { return Current().StartMenuFolderReference(); }

common::WideString SendToFolderReference() { return Current().SendToFolderReference(); }

common::WideString ProgramMenuFolderReference() { return Current().ProgramMenuFolderReference(); }

common::WideString StartupFolderReference() { return Current().StartupFolderReference(); }

common::WideString DesktopFolderReference() { return Current().DesktopFolderReference(); }

int TraitsKindCode() { return Current().TraitsKindCode(); }

}  // namespace qm::traits::current
