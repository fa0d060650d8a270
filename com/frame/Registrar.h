#pragma once

#include "com/frame/ObjectMap.h"

namespace qm::com {

/// Writes the registry entries of every coclass in the map (CLSID with description, both ProgIDs
/// and InprocServer32 with threading model "Apartment"; the ProgID keys) and registers the type
/// libraries. Raises the first failure, with the HRESULT of the call that failed.
void RegisterServer(const ObjectMap& objects, HINSTANCE instance);

/// Removes what RegisterServer writes. Missing entries are not a failure. A type library that has
/// been registered from another file since then stays, because several DLLs may carry one library.
/// The ProgIDs and the library's other entries also stay while the other architecture has
/// registered them. Raises as RegisterServer does.
void UnregisterServer(const ObjectMap& objects, HINSTANCE instance);

}  // namespace qm::com
