#pragma once

#include "common/WideString.h"

/// Makes the key of a merge module, "ID:language". The language is a signed decimal number, 0 for
/// neutral.
CWideString MakeModuleKey(const CWideString& id, long language);
