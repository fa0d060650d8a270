#pragma once

#define IDS_COMPONENT_DESCRIPTION 1

#ifndef RC_INVOKED

#include "com/frame/ObjectMap.h"

namespace qm::siblings {

/// The coclasses that the DLL creates. Every component defines this function.
const com::ObjectMap& GetComponentObjects() noexcept;

#endif

}  // namespace qm::siblings
