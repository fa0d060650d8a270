#pragma once

#define IDS_COMPONENT_DESCRIPTION 1

#ifndef RC_INVOKED

#include "com/frame/ObjectMap.h"

namespace qm::com {

/// The coclasses that the DLL creates. Every component defines this function.
const ObjectMap& GetComponentObjects() noexcept;

}  // namespace qm::com

#endif
