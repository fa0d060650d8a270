#pragma once

#include <windows.h>

namespace qm::com {

/// Creates an object of a class; see CreateComObject.
using ComCreator = HRESULT (*)(IUnknown* outer, REFIID iid, void** out) noexcept;

/// One coclass of the server.
struct ObjectMapEntry {
  const CLSID* clsid;
  const wchar_t* progId;                    ///< with its version, "Server.Class.1"
  const wchar_t* versionIndependentProgId;  ///< "Server.Class"
  UINT descriptionId;                       ///< string resource that describes the class
  ComCreator create;
};

/// The coclasses of a DLL and the type libraries that describe them. The DLL owns what this points
/// to.
struct ObjectMap {
  const ObjectMapEntry* entries;
  size_t count;
  /// The type library that the DLL contains as a resource.
  const GUID* classLibrary;
  /// The type library of the interfaces, and the name of its file beside the DLL. Both are null if
  /// the resource describes the interfaces too.
  const GUID* interfaceLibrary = nullptr;
  const wchar_t* interfaceLibraryFile = nullptr;
};

}  // namespace qm::com
