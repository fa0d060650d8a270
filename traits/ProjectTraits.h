#pragma once

#include "common/WideString.h"

namespace qm::traits {

/// How a kind of project spells folders and properties. All spellings come from here. The two kinds
/// are ProjectTraitsMSI and ProjectTraitsPro.
///
/// The order of the 25 virtual functions is fixed; the destructor follows them. A "reference" is
/// the spelling in a project, such as "[SystemFolder]"; a "display" is the spelling that users see.
class ProjectTraits {
 public:
  ProjectTraits(const ProjectTraits&) = delete;
  ProjectTraits& operator=(const ProjectTraits&) = delete;

  /// Returns whether `name` is a predefined folder, shell folders included. Case-sensitive.
  virtual bool PredefinedFolderMatch(const common::WideString& name) const = 0;
  /// Returns whether `name` is a folder of the user's shell. Case-sensitive.
  virtual bool ShellFolderMatch(const common::WideString& name) const = 0;

  virtual wchar_t OpenDelimiterChar() const = 0;
  virtual wchar_t CloseDelimiterChar() const = 0;
  virtual common::WideString OpenDelimiter() const = 0;
  virtual common::WideString CloseDelimiter() const = 0;

  virtual common::WideString InstallDirProperty() const = 0;
  virtual common::WideString InstallDirReference() const = 0;
  virtual common::WideString SystemFolderReference() const = 0;
  virtual common::WideString SystemFolderDisplay() const = 0;
  virtual common::WideString WindowsFolderReference() const = 0;
  virtual common::WideString WindowsFolderDisplay() const = 0;
  virtual common::WideString ProgramFilesReference() const = 0;
  virtual common::WideString ProgramFilesDisplay() const = 0;
  virtual common::WideString CommonFilesReference() const = 0;
  virtual common::WideString CommonFilesDisplay() const = 0;
  virtual common::WideString SupportDirReference() const = 0;
  virtual common::WideString RuntimeTextSubsReference() const = 0;
  virtual common::WideString TaskBarFolderReference() const = 0;
  virtual common::WideString StartMenuFolderReference() const = 0;
  virtual common::WideString SendToFolderReference() const = 0;
  virtual common::WideString ProgramMenuFolderReference() const = 0;
  virtual common::WideString StartupFolderReference() const = 0;
  virtual common::WideString DesktopFolderReference() const = 0;

  /// 2 for installer-database projects, 4 for script-based ones.
  virtual int TraitsKindCode() const = 0;

  virtual ~ProjectTraits() = default;

 protected:
  ProjectTraits() noexcept = default;
};

}  // namespace qm::traits
