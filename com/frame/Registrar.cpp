#include "com/frame/Registrar.h"

#include <windows.h>

#include "com/error/Raise.h"
#include "com/error/win32_exception.h"
#include "com/frame/DllPath.h"
#include "com/frame/TypeLibraries.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/Path.h"
#include "common/RegistryKey.h"

namespace qm::com {

namespace {

// Differences between the architectures: the key in which a type library names its file for each of
// them, and the flag that opens the keys of the other one. Each has its own CLSID key. ProgIDs and
// type libraries are shared.
#ifdef _WIN64
constexpr SYSKIND kSystem = SYS_WIN64;
constexpr wchar_t kOwnFile[] = L"win64";
constexpr wchar_t kOtherFile[] = L"win32";
constexpr REGSAM kOtherKeys = KEY_WOW64_32KEY;
#else
constexpr SYSKIND kSystem = SYS_WIN32;
constexpr wchar_t kOwnFile[] = L"win32";
constexpr wchar_t kOtherFile[] = L"win64";
constexpr REGSAM kOtherKeys = KEY_WOW64_64KEY;
#endif

void RaiseIfRegistryFailed(LSTATUS status) {
  RaiseIfFailed(HResultFromCode(static_cast<DWORD>(status)));
}

/// Sets a value of a key below HKEY_CLASSES_ROOT, and creates the key if it is missing. A null
/// `name` means the default value.
void SetValue(const common::WideString& key, const wchar_t* name, const common::WideString& value) {
  common::UniqueRegistryKey handle;
  RaiseIfRegistryFailed(::RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0,
                                          KEY_SET_VALUE, nullptr, handle.Put(), nullptr));
  RaiseIfRegistryFailed(
      ::RegSetValueExW(handle.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                       static_cast<DWORD>((value.length() + 1) * sizeof(wchar_t))));
}

void DeleteKey(const common::WideString& key) {
  const LSTATUS status = ::RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) {
    RaiseIfRegistryFailed(status);
  }
}

/// Returns whether the other architecture has a key. A 32-bit system has only one set of keys.
bool OtherArchitectureHas(const common::WideString& key) noexcept {
  common::UniqueRegistryKey handle;
  return ::RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_QUERY_VALUE | kOtherKeys,
                         handle.Put()) == ERROR_SUCCESS;
}

common::WideString FormatGuid(REFGUID guid) {
  wchar_t text[39];
  ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

common::WideString MakeClassKey(const ObjectMapEntry& entry) {
  return common::WideString(L"CLSID\\") + FormatGuid(*entry.clsid);
}

common::WideString LoadStringResource(HINSTANCE instance, UINT id) {
  const wchar_t* text = nullptr;
  // With a buffer size of 0, LoadStringW returns the address of the resource itself, which is not
  // null-terminated.
  const int length = ::LoadStringW(instance, id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? common::WideString(text, static_cast<size_t>(length)) : common::WideString();
}

void RegisterClass(const ObjectMapEntry& entry, REFGUID library, HINSTANCE instance) {
  const common::WideString clsid = FormatGuid(*entry.clsid);
  const common::WideString description = LoadStringResource(instance, entry.descriptionId);

  const common::WideString versioned(entry.progId);
  SetValue(versioned, nullptr, description);
  SetValue(versioned + L"\\CLSID", nullptr, clsid);

  const common::WideString current(entry.versionIndependentProgId);
  SetValue(current, nullptr, description);
  SetValue(current + L"\\CLSID", nullptr, clsid);
  SetValue(current + L"\\CurVer", nullptr, versioned);

  const common::WideString key = MakeClassKey(entry);
  SetValue(key, nullptr, description);
  SetValue(key + L"\\ProgID", nullptr, versioned);
  SetValue(key + L"\\VersionIndependentProgID", nullptr, current);
  SetValue(key + L"\\Programmable", nullptr, common::WideString());
  SetValue(key + L"\\TypeLib", nullptr, FormatGuid(library));
  SetValue(key + L"\\InprocServer32", nullptr, DllPath(instance));
  SetValue(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
}

void RegisterLibrary(const common::WideString& path) {
  common::ComPtr<ITypeLib> library;
  RaiseIfFailed(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
  // RegisterTypeLib does not change the paths, although its parameters are not const.
  RaiseIfFailed(::RegisterTypeLib(library.Get(), const_cast<wchar_t*>(path.c_str()),
                                  const_cast<wchar_t*>(common::ParentFolder(path).c_str())));
}

/// Returns whether two paths name the same file despite short names and letter case.
bool IsSameFile(const wchar_t* a, const wchar_t* b) {
  wchar_t longA[MAX_PATH * 2];
  wchar_t longB[MAX_PATH * 2];
  const auto longName = [](const wchar_t* path, wchar_t(&buffer)[MAX_PATH * 2]) {
    const DWORD length = ::GetLongPathNameW(path, buffer, MAX_PATH * 2);
    return length > 0 && length < MAX_PATH * 2 ? buffer : path;
  };
  return common::CompareFileNames(longName(a, longA), longName(b, longB)) == 0;
}

/// Removes the entries of a class. Keeps the ProgIDs if the other architecture has registered the
/// class as well.
void UnregisterClass(const ObjectMapEntry& entry) {
  const common::WideString key = MakeClassKey(entry);
  DeleteKey(key);
  if (!OtherArchitectureHas(key)) {
    DeleteKey(entry.progId);
    DeleteKey(entry.versionIndependentProgId);
  }
}

/// Unregisters a type library, unless it is registered from a file other than `path`. If the other
/// architecture has registered it as well, removes only the entry of this one.
void UnregisterLibrary(REFGUID libid, const common::WideString& path) {
  // Checked first, also because systems differ in what UnRegisterTypeLib returns for a library that
  // is not registered.
  common::UniqueBstr registered;
  if (SUCCEEDED(::QueryPathOfRegTypeLib(libid, 1, 0, LOCALE_NEUTRAL, registered.Put())) &&
      registered && IsSameFile(registered.Get(), path.c_str())) {
    const common::WideString files =
        common::WideString(L"TypeLib\\") + FormatGuid(libid) + L"\\1.0\\0\\";
    if (OtherArchitectureHas(files + kOtherFile)) {
      // Both architectures share the library and, on some systems, its interfaces.
      DeleteKey(files + kOwnFile);
    } else {
      RaiseIfFailed(::UnRegisterTypeLib(libid, 1, 0, LOCALE_NEUTRAL, kSystem));
    }
  }
}

}  // namespace

void RegisterServer(const ObjectMap& objects, HINSTANCE instance) {
  for (size_t i = 0; i < objects.count; ++i) {
    RegisterClass(objects.entries[i], *objects.classLibrary, instance);
  }
  // The interface library is registered last. The library of the classes contains copies of the
  // interfaces, but their registry entries must name the library that declares them.
  RegisterLibrary(DllPath(instance));
  if (objects.interfaceLibrary) {
    RegisterLibrary(GetInterfaceLibraryPath(objects, instance));
  }
}

void UnregisterServer(const ObjectMap& objects, HINSTANCE instance) {
  for (size_t i = 0; i < objects.count; ++i) {
    UnregisterClass(objects.entries[i]);
  }
  if (objects.interfaceLibrary) {
    UnregisterLibrary(*objects.interfaceLibrary, GetInterfaceLibraryPath(objects, instance));
  }
  UnregisterLibrary(*objects.classLibrary, DllPath(instance));
}

}  // namespace qm::com
