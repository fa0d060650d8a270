#pragma once

#include "common/WideString.h"

/// The operations of ProjectTraits for the project that is active at the time of the call. Each
/// throws and raises as CProjectTraitsManager::Current does. The server calls none of them, because
/// its results are the same for projects of every kind.
namespace qm::traits::current {

bool PredefinedFolderMatch(const common::WideString& name);
bool ShellFolderMatch(const common::WideString& name);
wchar_t OpenDelimiterChar();
wchar_t CloseDelimiterChar();
common::WideString OpenDelimiter();
common::WideString CloseDelimiter();
common::WideString InstallDirProperty();
common::WideString InstallDirReference();
common::WideString SystemFolderReference();
common::WideString SystemFolderDisplay();
common::WideString WindowsFolderReference();
common::WideString WindowsFolderDisplay();
common::WideString ProgramFilesReference();
common::WideString ProgramFilesDisplay();
common::WideString CommonFilesReference();
common::WideString CommonFilesDisplay();
common::WideString SupportDirReference();
common::WideString RuntimeTextSubsReference();
common::WideString TaskBarFolderReference();
common::WideString StartMenuFolderReference();
common::WideString SendToFolderReference();
common::WideString ProgramMenuFolderReference();
common::WideString StartupFolderReference();
common::WideString DesktopFolderReference();
int TraitsKindCode();

}  // namespace qm::traits::current
