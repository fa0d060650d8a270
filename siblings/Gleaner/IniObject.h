#pragma once

#include "siblings/Component/ComponentObject.h"
#include "siblings/Gleaner/IniDocument.h"

/// Base of the reader and of the objects that it hands out. These are views that keep the parsed
/// file alive; every request creates a new one.
template <class Interface>
using CIniObject = CComponentObject<Interface, &CLSID_IniReader>;
