#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "merge/Module.h"

namespace qm::merge {

/// The choice of a module for a requirement, and the reason for it.
struct Choice {
  std::optional<size_t> module;  ///< position; std::nullopt if no module satisfies it
  std::string reason;            ///< "the highest version of 3", "no module has this ID", ...
};

/// An index of modules by ID, which finds the module for a requirement. Positions are those in the
/// list passed to the constructor. The list must outlive the object. Immutable.
class ModuleIndex {
 public:
  explicit ModuleIndex(const std::vector<Module>& modules);

  const std::vector<Module>& Modules() const noexcept { return m_modules; }

  /// Returns the positions of all modules with an ID, in ascending order. Ignores the case of the
  /// ID.
  const std::vector<size_t>& FindById(const std::string& moduleId) const;

  /// Returns the positions of the modules that a key means, in ascending order, by the rules of the
  /// catalog's FindModule: "ID" and "ID:" mean every language, "ID:1033" the one language whose
  /// decimal text this is. The first colon separates the two. Ignores the case of the ID.
  ///
  /// Also finds modules whose ID holds colons, by the whole ID or by their own key: there the last
  /// colon separates ID and language.
  std::vector<size_t> FindByKey(const std::string& key) const;

  /// Chooses the module of the highest version that satisfies a requirement. Of equal versions, a
  /// module of exactly the wanted language takes precedence, then the first one. A requirement of
  /// no ID is satisfied by no module, not by one without an ID.
  Choice Choose(const Requirement& requirement) const;

 private:
  void AddByIdAndLanguage(const std::string& moduleId, const std::string& language,
                          std::vector<size_t>& positions) const;

  const std::vector<Module>& m_modules;
  std::map<std::string, std::vector<size_t>> m_byId;
};

}  // namespace qm::merge
