#pragma once

#include "siblings/Component/ComponentObject.h"
#include "siblings/Gleaner/IniFile.h"

/// Base of the reader and of everything that it hands out. Those are views: each shares the file
/// that was read, and is made anew whenever it is asked for.
template <class Interface>
using CIniObject = CComponentObject<Interface, &CLSID_IniReader>;
