#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"

namespace qm::module {

/// A dialog of a module.
class CMMDialog : public NamedItemBase<IMMDialog> {};

}  // namespace qm::module
