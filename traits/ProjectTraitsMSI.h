#pragma once

#include "traits/ProjectTraits.h"

/// Traits of installer-database projects, which write properties in square brackets.
class ProjectTraitsMSI final : public ProjectTraits {
 public:
  bool PredefinedFolderMatch(const CWideString& name) const override;
  bool ShellFolderMatch(const CWideString& name) const override;
  wchar_t OpenDelimiterChar() const override;
  wchar_t CloseDelimiterChar() const override;
  CWideString OpenDelimiter() const override;
  CWideString CloseDelimiter() const override;
  CWideString InstallDirProperty() const override;
  CWideString InstallDirReference() const override;
  CWideString SystemFolderReference() const override;
  CWideString SystemFolderDisplay() const override;
  CWideString WindowsFolderReference() const override;
  CWideString WindowsFolderDisplay() const override;
  CWideString ProgramFilesReference() const override;
  CWideString ProgramFilesDisplay() const override;
  CWideString CommonFilesReference() const override;
  CWideString CommonFilesDisplay() const override;
  CWideString SupportDirReference() const override;
  CWideString RuntimeTextSubsReference() const override;
  CWideString TaskBarFolderReference() const override;
  CWideString StartMenuFolderReference() const override;
  CWideString SendToFolderReference() const override;
  CWideString ProgramMenuFolderReference() const override;
  CWideString StartupFolderReference() const override;
  CWideString DesktopFolderReference() const override;
  int TraitsKindCode() const override;
};
