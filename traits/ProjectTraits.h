#pragma once

#include "common/WideString.h"

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
  virtual bool PredefinedFolderMatch(const CWideString& name) const = 0;
  /// Returns whether `name` is a folder of the user's shell. Case-sensitive.
  virtual bool ShellFolderMatch(const CWideString& name) const = 0;

  virtual wchar_t OpenDelimiterChar() const = 0;
  virtual wchar_t CloseDelimiterChar() const = 0;
  virtual CWideString OpenDelimiter() const = 0;
  virtual CWideString CloseDelimiter() const = 0;

  virtual CWideString InstallDirProperty() const = 0;
  virtual CWideString InstallDirReference() const = 0;
  virtual CWideString SystemFolderReference() const = 0;
  virtual CWideString SystemFolderDisplay() const = 0;
  virtual CWideString WindowsFolderReference() const = 0;
  virtual CWideString WindowsFolderDisplay() const = 0;
  virtual CWideString ProgramFilesReference() const = 0;
  virtual CWideString ProgramFilesDisplay() const = 0;
  virtual CWideString CommonFilesReference() const = 0;
  virtual CWideString CommonFilesDisplay() const = 0;
  virtual CWideString SupportDirReference() const = 0;
  virtual CWideString RuntimeTextSubsReference() const = 0;
  virtual CWideString TaskBarFolderReference() const = 0;
  virtual CWideString StartMenuFolderReference() const = 0;
  virtual CWideString SendToFolderReference() const = 0;
  virtual CWideString ProgramMenuFolderReference() const = 0;
  virtual CWideString StartupFolderReference() const = 0;
  virtual CWideString DesktopFolderReference() const = 0;

  /// 2 for installer-database projects, 4 for script-based ones.
  virtual int TraitsKindCode() const = 0;

  virtual ~ProjectTraits() = default;

 protected:
  ProjectTraits() noexcept = default;
};
