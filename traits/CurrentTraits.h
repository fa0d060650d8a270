#pragma once

#include "common/WideString.h"

/// The operations of ProjectTraits for the project that is active at the time of the call. Each
/// throws and raises as CProjectTraitsManager::Current does. The server calls none of them, because
/// its results are the same for projects of every kind.
namespace current_traits {

bool PredefinedFolderMatch(const CWideString& name);
bool ShellFolderMatch(const CWideString& name);
wchar_t OpenDelimiterChar();
wchar_t CloseDelimiterChar();
CWideString OpenDelimiter();
CWideString CloseDelimiter();
CWideString InstallDirProperty();
CWideString InstallDirReference();
CWideString SystemFolderReference();
CWideString SystemFolderDisplay();
CWideString WindowsFolderReference();
CWideString WindowsFolderDisplay();
CWideString ProgramFilesReference();
CWideString ProgramFilesDisplay();
CWideString CommonFilesReference();
CWideString CommonFilesDisplay();
CWideString SupportDirReference();
CWideString RuntimeTextSubsReference();
CWideString TaskBarFolderReference();
CWideString StartMenuFolderReference();
CWideString SendToFolderReference();
CWideString ProgramMenuFolderReference();
CWideString StartupFolderReference();
CWideString DesktopFolderReference();
int TraitsKindCode();

}  // namespace current_traits
