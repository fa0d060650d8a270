#pragma once

#include <windows.h>

#include "catalog/ModuleMatcher.h"

/// The query that a script writes: a key, "ID" or "ID:language", or an array of key and version,
/// which may be an array of VARIANTs or texts or an array object of the script. What is no text is
/// converted to one. Raises E_INVALIDARG for everything else.
ModuleQuery QueryOfArgument(const VARIANT& argument);

/// Writes the number of modules to where a script wants it: a variable of type VT_I4. Null, and an
/// argument that was left out, are skipped.
void GiveCount(long count, VARIANT* out) noexcept;
