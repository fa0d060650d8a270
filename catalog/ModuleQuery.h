#pragma once

#include <string_view>

#include "catalog/CatalogModules.h"

namespace qm::catalog {

/// The criteria of a search for modules. All comparisons ignore case.
struct ModuleQuery {
  common::WideString moduleId;
  common::WideString language;  ///< in decimal; empty for any language
  common::WideString version;   ///< empty for any version
};

/// Parses a key, "ID" or "ID:language", which is split at its first colon, and a version.
ModuleQuery ParseModuleKey(std::wstring_view key, std::wstring_view version);

/// Returns the modules of `modules` that match the query, as new objects in the same order. The
/// caller must own the ApartmentGate, because matches are looked up in the key table of the
/// process.
CatalogModules FindMatchingModules(const CatalogModules& modules, const ModuleQuery& query);

}  // namespace qm::catalog
