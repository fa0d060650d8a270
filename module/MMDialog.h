#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"

/// A dialog of a module.
class CMMDialog : public CMMNamedItem<IMMDialog> {};
