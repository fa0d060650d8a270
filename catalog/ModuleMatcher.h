#pragma once

#include "catalog/CatalogModules.h"

/// The criteria of a search for modules. All comparisons ignore case.
struct ModuleQuery {
  CWideString moduleId;
  CWideString language;  ///< in decimal; empty for any language
  CWideString version;   ///< empty for any version
};

/// Parses a key, "ID" or "ID:language", which is split at its first colon, and a version. A null
/// text counts as empty.
ModuleQuery QueryOfKey(BSTR key, BSTR version);

/// Returns the modules of `modules` that match the query, as new objects in the same order. The
/// caller is behind the ApartmentGate, because matches are looked up in the key table of the
/// process.
CModuleList MatchModules(const CModuleList& modules, const ModuleQuery& query);
