#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"

namespace qm::module {

/// A custom action of a module.
class CMMCustomAction : public NamedItemBase<IMMCustomAction> {};

}  // namespace qm::module
