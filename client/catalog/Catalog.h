#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleNames.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"

namespace mmcat {

/// The server's catalog of merge modules. Texts are UTF-8. Every member throws ServerFailure if a
/// call of the server fails.
class Catalog {
 public:
  /// Gets the catalog that the server's manager keeps for projects that use merge modules.
  Catalog();

  /// The catalog itself.
  qm::common::ComPtr<IDispatch> Object() const { return {m_catalog.Get()}; }

  /// All modules, in catalog order.
  qm::common::ComPtr<IMergeModules> Modules() const;

  /// What all modules can be named by, in catalog order.
  std::vector<NamedModule> Names() const;

  /// The modules with a key, "ID" or "ID:language". An empty version matches all versions.
  qm::common::ComPtr<IMergeModules> FindModules(const std::string& key,
                                                const std::string& version) const;

  /// The same for a word, which is a key or an ID as FindModules finds them; or else a pattern of
  /// keys, IDs or file names (* and ?), or a name as described in ModuleNames.h.
  qm::common::ComPtr<IMergeModules> FindNamedModules(const std::string& word,
                                                     const std::string& version) const;

  /// The module search folders.
  qm::common::ComPtr<IMMSources> Sources() const;

  /// The display name of a module key according to the index tables, else the key itself.
  std::string FindDisplayName(const std::string& key) const;

 private:
  qm::common::ComPtr<IMMCatalogVelmora> m_catalog;
};

}  // namespace mmcat
