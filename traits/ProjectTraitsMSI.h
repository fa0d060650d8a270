#pragma once

#include "traits/ProjectTraits.h"

namespace qm::traits {

/// Traits of installer-database projects, which write properties in square brackets.
class ProjectTraitsMSI final : public ProjectTraits {
 public:
  bool PredefinedFolderMatch(const common::WideString& name) const override;
  bool ShellFolderMatch(const common::WideString& name) const override;
  wchar_t OpenDelimiterChar() const override;
  wchar_t CloseDelimiterChar() const override;
  common::WideString OpenDelimiter() const override;
  common::WideString CloseDelimiter() const override;
  common::WideString InstallDirProperty() const override;
  common::WideString InstallDirReference() const override;
  common::WideString SystemFolderReference() const override;
  common::WideString SystemFolderDisplay() const override;
  common::WideString WindowsFolderReference() const override;
  common::WideString WindowsFolderDisplay() const override;
  common::WideString ProgramFilesReference() const override;
  common::WideString ProgramFilesDisplay() const override;
  common::WideString CommonFilesReference() const override;
  common::WideString CommonFilesDisplay() const override;
  common::WideString SupportDirReference() const override;
  common::WideString RuntimeTextSubsReference() const override;
  common::WideString TaskBarFolderReference() const override;
  common::WideString StartMenuFolderReference() const override;
  common::WideString SendToFolderReference() const override;
  common::WideString ProgramMenuFolderReference() const override;
  common::WideString StartupFolderReference() const override;
  common::WideString DesktopFolderReference() const override;
  int TraitsKindCode() const override;
};

}  // namespace qm::traits
