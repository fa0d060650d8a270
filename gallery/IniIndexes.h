#pragma once

#include <atomic>
#include <map>

#include "gallery/Siblings.h"

/// The index tables of this process: which display name a module has, and which module delivers a
/// file. They are read from INI files once, and never cleared or read again. Keys are compared
/// exactly.
///
/// They are read behind the ApartmentGate and stay as they are from then on, so that any apartment
/// may use them: LookupModuleName waits for an apartment that is reading them, and who has called
/// LoadOnce may use all tables.
class CIniIndexes {
 public:
  using Table = std::map<CWideString, CWideString>;

  static CIniIndexes& Instance();

  /// Reads the three tables from the folders that the application services name, at the first call
  /// in the process and at no other, even when that fails. Raises failures of the services, and of
  /// a reader that fails in a file that it has opened; a file that is missing, or that
  /// has no folder, leaves its table empty.
  void LoadOnce(IApplicationServices& services);

  /// "modules.ini": the display name of a module by its key. False, and `name` untouched, for other
  /// keys.
  bool LookupModuleName(const CWideString& key, CWideString& name) const;

  /// "FilesToModules.ini": a flag and a module key ("0:ID:language") by file name in lower case.
  const Table& FileModules() const noexcept { return m_fileModules; }

  /// "PlatformFilesToModules.ini": the module that delivers a system file, by its name in lower
  /// case.
  const Table& PlatformFileModules() const noexcept { return m_platformFileModules; }

 private:
  CIniIndexes() = default;

  void LoadModuleNames(const CWideString& folder);
  void LoadFileModules(const CWideString& folder);
  void LoadPlatformFileModules(const CWideString& folder);

  bool m_bLoaded = false;
  std::atomic<bool> m_bComplete = false;  ///< whether the tables stay as they are
  Table m_moduleNames;
  Table m_fileModules;
  Table m_platformFileModules;
};
