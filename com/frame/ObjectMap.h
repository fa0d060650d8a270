#pragma once

#include <windows.h>

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

/// The coclasses of a DLL and the type libraries that describe them; the DLL owns it.
struct ObjectMap {
  const ObjectMapEntry* entries;
  size_t count;
  /// The library that the DLL carries as a resource.
  const GUID* classLibrary;
  /// The library of the interfaces and its file, which lies beside the DLL; null when the resource
  /// describes the interfaces too.
  const GUID* interfaceLibrary = nullptr;
  const wchar_t* interfaceLibraryFile = nullptr;
};
