#pragma once

#include "common/WideString.h"

/// How one kind of project spells folders and properties. Every question of written form goes
/// through here; the two kinds are ProjectTraitsMSI and ProjectTraitsPro.
///
/// The order of the 25 operations is fixed; the destructor comes behind them. A "reference" is the
/// spelling in a project, "[SystemFolder]" for instance; a "display" is the spelling for people.
class ProjectTraits {
 public:
  ProjectTraits(const ProjectTraits&) = delete;
  ProjectTraits& operator=(const ProjectTraits&) = delete;

  /// Whether `name` is a predefined folder, shell folders included. Exact, case counts.
  virtual bool PredefinedFolderMatch(const CWideString& name) const = 0;
  /// Whether `name` is a folder of the user's shell. Exact, case counts.
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
