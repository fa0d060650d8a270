#include "server/frame/Registrar.h"

#include <windows.h>

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/Path.h"
#include "common/RegistryKey.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "server/error/Raise.h"
#include "server/error/win32_exception.h"

namespace {

void ThrowIfRegistryFailed(LSTATUS status) {
  ThrowIfFailed(qm::HResultFromCode(static_cast<DWORD>(status)));
}

/// Sets a value of a key below HKEY_CLASSES_ROOT, which is made when it is missing; null names the
/// key's default value.
void SetValue(const CWideString& key, const wchar_t* name, const CWideString& value) {
  CUniqueRegistryKey handle;
  ThrowIfRegistryFailed(::RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0,
                                          KEY_SET_VALUE, nullptr, handle.Put(), nullptr));
  ThrowIfRegistryFailed(
      ::RegSetValueExW(handle.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                       static_cast<DWORD>((value.length() + 1) * sizeof(wchar_t))));
}

void DeleteKey(const CWideString& key) {
  const LSTATUS status = ::RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) {
    ThrowIfRegistryFailed(status);
  }
}

CWideString TextOf(REFGUID guid) {
  wchar_t text[39];
  ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

CWideString ClassKey(const ObjectMapEntry& entry) {
  return CWideString(L"CLSID\\") + TextOf(*entry.clsid);
}

CWideString StringResource(HINSTANCE instance, UINT id) {
  const wchar_t* text = nullptr;
  // A buffer size of 0 gives the address of the resource itself, which has no terminator.
  const int length = ::LoadStringW(instance, id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? CWideString(text, static_cast<size_t>(length)) : CWideString();
}

void RegisterClass(const ObjectMapEntry& entry, HINSTANCE instance) {
  const CWideString clsid = TextOf(*entry.clsid);
  const CWideString description = StringResource(instance, entry.descriptionId);

  const CWideString versioned(entry.progId);
  SetValue(versioned, nullptr, description);
  SetValue(versioned + L"\\CLSID", nullptr, clsid);

  const CWideString current(entry.versionIndependentProgId);
  SetValue(current, nullptr, description);
  SetValue(current + L"\\CLSID", nullptr, clsid);
  SetValue(current + L"\\CurVer", nullptr, versioned);

  const CWideString key = ClassKey(entry);
  SetValue(key, nullptr, description);
  SetValue(key + L"\\ProgID", nullptr, versioned);
  SetValue(key + L"\\VersionIndependentProgID", nullptr, current);
  SetValue(key + L"\\Programmable", nullptr, CWideString());
  SetValue(key + L"\\TypeLib", nullptr, TextOf(LIBID_QMMMUPDATER2Lib));
  SetValue(key + L"\\InprocServer32", nullptr, ModulePath(instance));
  SetValue(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
}

void RegisterLibrary(const CWideString& path) {
  CComPtr<ITypeLib> library;
  ThrowIfFailed(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
  // The interfaces take both paths as text that they do not change.
  ThrowIfFailed(::RegisterTypeLib(library.Get(), const_cast<wchar_t*>(path.c_str()),
                                  const_cast<wchar_t*>(FolderOf(path).c_str())));
}

void UnregisterLibrary(REFGUID libid) {
  // Asked first, because systems differ in what they answer for a library that is not registered.
  CUniqueBstr path;
  if (SUCCEEDED(::QueryPathOfRegTypeLib(libid, 1, 0, LOCALE_NEUTRAL, path.Put()))) {
    ThrowIfFailed(::UnRegisterTypeLib(libid, 1, 0, LOCALE_NEUTRAL, SYS_WIN32));
  }
}

}  // namespace

HRESULT RegisterServer(const ObjectMap& objects, HINSTANCE instance) {
  for (size_t i = 0; i < objects.count; ++i) {
    RegisterClass(objects.entries[i], instance);
  }
  // The interface library comes last: the library of the classes carries copies of the interfaces,
  // and the interfaces' own entries are to name the library that declares them.
  RegisterLibrary(ModulePath(instance));
  RegisterLibrary(InterfaceLibraryPath());
  return S_OK;
}

HRESULT UnregisterServer(const ObjectMap& objects) {
  for (size_t i = 0; i < objects.count; ++i) {
    const ObjectMapEntry& entry = objects.entries[i];
    DeleteKey(entry.progId);
    DeleteKey(entry.versionIndependentProgId);
    DeleteKey(ClassKey(entry));
  }
  UnregisterLibrary(LIBID_QMMMUpdaterLib);
  UnregisterLibrary(LIBID_QMMMUPDATER2Lib);
  return S_OK;
}
