#include "traits/CurrentTraits.h"

#include "traits/ProjectTraitsManager.h"

namespace current_traits {

namespace {

const ProjectTraits& Current() { return CProjectTraitsManager::Instance().Current(); }

}  // namespace

bool PredefinedFolderMatch(const CWideString& name) {
  return Current().PredefinedFolderMatch(name);
}

bool ShellFolderMatch(const CWideString& name) { return Current().ShellFolderMatch(name); }

wchar_t OpenDelimiterChar() { return Current().OpenDelimiterChar(); }

wchar_t CloseDelimiterChar() { return Current().CloseDelimiterChar(); }

CWideString OpenDelimiter() { return Current().OpenDelimiter(); }

CWideString CloseDelimiter() { return Current().CloseDelimiter(); }

CWideString InstallDirProperty() { return Current().InstallDirProperty(); }

CWideString InstallDirReference() { return Current().InstallDirReference(); }

CWideString SystemFolderReference() { return Current().SystemFolderReference(); }

CWideString SystemFolderDisplay() { return Current().SystemFolderDisplay(); }

CWideString WindowsFolderReference() { return Current().WindowsFolderReference(); }

CWideString WindowsFolderDisplay() { return Current().WindowsFolderDisplay(); }

CWideString ProgramFilesReference() { return Current().ProgramFilesReference(); }

CWideString ProgramFilesDisplay() { return Current().ProgramFilesDisplay(); }

CWideString CommonFilesReference() { return Current().CommonFilesReference(); }

CWideString CommonFilesDisplay() { return Current().CommonFilesDisplay(); }

CWideString SupportDirReference() { return Current().SupportDirReference(); }

CWideString RuntimeTextSubsReference() { return Current().RuntimeTextSubsReference(); }

CWideString TaskBarFolderReference() { return Current().TaskBarFolderReference(); }

CWideString StartMenuFolderReference() { return Current().StartMenuFolderReference(); }

CWideString SendToFolderReference() { return Current().SendToFolderReference(); }

CWideString ProgramMenuFolderReference() { return Current().ProgramMenuFolderReference(); }

CWideString StartupFolderReference() { return Current().StartupFolderReference(); }

CWideString DesktopFolderReference() { return Current().DesktopFolderReference(); }

int TraitsKindCode() { return Current().TraitsKindCode(); }

}  // namespace current_traits
