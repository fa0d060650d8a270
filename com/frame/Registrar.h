#pragma once

#include "com/frame/ObjectMap.h"

/// Writes the registry entries of every coclass of the map (CLSID with description, InprocServer32
/// with threading model "Apartment" and both ProgIDs; the ProgID keys) and registers the type
/// libraries. Returns the first failure unchanged.
HRESULT RegisterServer(const ObjectMap& objects, HINSTANCE instance);

/// Removes what RegisterServer writes; entries that are not there are no failure. A type library
/// that was registered from another file since then stays: several DLLs may carry one library.
HRESULT UnregisterServer(const ObjectMap& objects, HINSTANCE instance);
