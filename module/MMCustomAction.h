#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"

/// A custom action of a module.
class CMMCustomAction : public CMMNamedItem<IMMCustomAction> {};
