#pragma once

#define IDS_COMPONENT_DESCRIPTION 1

#ifndef RC_INVOKED

#include "com/frame/ObjectMap.h"

/// The coclasses that the DLL creates; every component defines it.
const ObjectMap& ComponentObjects() noexcept;

#endif
