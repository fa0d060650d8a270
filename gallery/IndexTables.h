#pragma once

#include <atomic>
#include <map>

#include "gallery/SiblingObjects.h"

namespace qm::gallery {

/// The index tables of the process: the display names of modules, and the modules that deliver
/// files. They are read once from INI files. Keys are case-sensitive.
///
/// The tables are read inside the ApartmentGate and never change afterwards. After a call of
/// LoadOnce, any thread may use them. LookupModuleName may be called at any time and waits while
/// another apartment is reading the tables.
class IndexTables {
 public:
  using Table = std::map<common::WideString, common::WideString>;

  static IndexTables& Instance();

  /// Reads the three tables from the folders that the application services return. Only the first
  /// call in the process does so, even if it fails. Raises failures of the services, and of the
  /// reader after it has opened a file. A table stays empty if its file cannot be opened or its
  /// folder is empty.
  void LoadOnce(IApplicationServices& services);

  /// Looks up the display name of a module in "modules.ini" by the module key. Returns false and
  /// leaves `name` alone if the file does not list the key.
  bool LookupModuleName(const common::WideString& key, common::WideString& name) const;

  /// "FilesToModules.ini": a flag and a module key ("0:ID:language") by lower-case file name.
  const Table& FilesToModules() const noexcept { return m_fileModules; }

  /// "PlatformFilesToModules.ini": a module key, with or without a flag, by the lower-case name of
  /// a system file.
  const Table& PlatformFilesToModules() const noexcept { return m_platformFileModules; }

 private:
  IndexTables() = default;

  void LoadModuleNames(const common::WideString& folder);
  void LoadFileModules(const common::WideString& folder);
  void LoadPlatformFileModules(const common::WideString& folder);

  bool m_loadStarted = false;
  std::atomic<bool> m_loadFinished = false;  ///< set once loading has ended
  Table m_moduleNames;
  Table m_fileModules;
  Table m_platformFileModules;
};

}  // namespace qm::gallery
