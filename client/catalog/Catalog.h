#pragma once

#include <string>
#include <vector>

#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"

/// The server's catalog of merge modules. Texts are UTF-8. Every operation throws ServerFailure
/// when its call fails.
class Catalog {
 public:
  /// The catalog that the server's manager hands out for projects that use merge modules.
  Catalog();

  /// All modules, in the order of the catalog.
  CComPtr<IMergeModules> Modules() const;

  /// The keys of all modules, in the order of the catalog.
  std::vector<std::string> Keys() const;

  /// The modules of a key, "ID" or "ID:language"; of one version, unless that is empty.
  CComPtr<IMergeModules> Find(const std::string& key, const std::string& version) const;

  CComPtr<IMMSources> Sources() const;

  /// Key of the module that delivers a file; empty when none does.
  std::string ModuleForFile(const std::string& fileName) const;

  /// Display name of a module key; the key itself when it has none.
  std::string DisplayName(const std::string& key) const;

 private:
  CComPtr<IMMCatalogVelmora> m_catalog;
};
