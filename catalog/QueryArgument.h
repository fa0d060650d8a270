#pragma once

#include <windows.h>

#include "catalog/ModuleQuery.h"

namespace qm::catalog {

/// Parses the query argument of a script: a key, "ID" or "ID:language", or an array of key and
/// version. The array may be a SAFEARRAY of VARIANTs or BSTRs, or an array object of the script.
/// Key and version are converted to texts. Raises E_INVALIDARG for anything else.
ModuleQuery ParseQueryArgument(const VARIANT& argument);

/// Stores the number of modules in a script's out argument as VT_I4. Does nothing if the argument
/// is null or was omitted.
void StoreCount(long count, VARIANT* out) noexcept;

}  // namespace qm::catalog
