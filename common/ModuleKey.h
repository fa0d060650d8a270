#pragma once

#include "common/WideString.h"

namespace qm::common {

/// Makes the key of a merge module, "ID:language". The language is written as a signed decimal
/// number, 0 for neutral. catalog/ModuleQuery.h parses keys.
WideString MakeModuleKey(const WideString& id, long language);

}  // namespace qm::common
