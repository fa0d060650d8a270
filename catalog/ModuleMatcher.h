#pragma once

#include "catalog/ModuleList.h"

/// Which modules are wanted. All comparisons are without regard to case.
struct ModuleQuery {
  CWideString moduleId;
  CWideString language;  ///< in decimal; empty when every language will do
  CWideString version;   ///< empty when every version will do
};

/// The query of a key, "ID" or "ID:language", divided at its first colon. A null text counts as
/// empty.
ModuleQuery QueryOfKey(BSTR key, BSTR version);

/// The modules of `modules` that answer the query, in their order and as new objects. The caller is
/// behind the ApartmentGate: each match is looked up in the key table of the process.
CModuleList MatchModules(const CModuleList& modules, const ModuleQuery& query);
