#pragma once

#include "com/frame/ObjectMap.h"

/// Writes the registry entries of every coclass of the map (CLSID with description, InprocServer32
/// with threading model "Apartment" and both ProgIDs; the ProgID keys) and registers the type
/// libraries. Raises the first failure, with the HRESULT of the call that failed.
void RegisterServer(const ObjectMap& objects, HINSTANCE instance);

/// Removes what RegisterServer writes; entries that are not there are no failure. A type library
/// that was registered from another file since then stays: several DLLs may carry one library.
/// Raises as RegisterServer does.
void UnregisterServer(const ObjectMap& objects, HINSTANCE instance);
