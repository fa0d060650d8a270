#pragma once

#include "com/component/ComponentObject.h"
#include "idl/siblings.h"
#include "siblings/Gleaner/IniDocument.h"

namespace qm::siblings {

/// Base of the reader and of the objects that it hands out. These are views that keep the parsed
/// file alive; every request creates a new one.
template <class Interface>
using IniObject = com::ComponentObject<Interface, &CLSID_IniReader>;

}  // namespace qm::siblings
