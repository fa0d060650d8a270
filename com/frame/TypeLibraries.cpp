#include "com/frame/TypeLibraries.h"

#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/frame/DllPath.h"
#include "common/ComPtr.h"
#include "common/ExclusiveLock.h"
#include "common/Path.h"

namespace {

TypeLibraries theLibraries;

HRESULT LoadLibraryOrRegistered(const CWideString& path, REFGUID libid, ITypeLib** out) noexcept {
  const HRESULT hr = ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, out);
  return SUCCEEDED(hr) ? hr : ::LoadRegTypeLib(libid, 1, 0, LOCALE_NEUTRAL, out);
}

}  // namespace

TypeLibraries& TypeLibraries::Instance() noexcept { return theLibraries; }

void TypeLibraries::Init(const ObjectMap& objects, HINSTANCE instance) noexcept {
  m_objects = objects;
  m_instance = instance;
}

HRESULT TypeLibraries::Get(TypeLibrary library, ITypeLib** out) noexcept {
  std::atomic<ITypeLib*>& kept = m_loaded[static_cast<size_t>(library)];
  if (!kept) {
    const bool fromFile = library == TypeLibrary::Interfaces && m_objects.interfaceLibrary;
    const GUID* const libid = fromFile ? m_objects.interfaceLibrary : m_objects.classLibrary;
    if (!libid) {
      return TYPE_E_LIBNOTREGISTERED;  // before Init
    }
    CComPtr<ITypeLib> loaded;
    const HRESULT hr = RunAtBoundary(GUID_NULL, [&] {
      return LoadLibraryOrRegistered(
          fromFile ? InterfaceLibraryPath(m_objects, m_instance) : ModulePath(m_instance), *libid,
          loaded.Put());
    });
    if (FAILED(hr)) {
      return hr;
    }
    const CExclusiveLock lock(m_lock);
    if (!kept) {
      kept = loaded.Detach();
      if (!std::exchange(m_isEnlisted, true)) {
        Enlist();
      }
    }
  }
  *out = CComPtr<ITypeLib>(kept).Detach();
  return S_OK;
}

void TypeLibraries::End() noexcept {
  m_isEnlisted = false;
  for (std::atomic<ITypeLib*>& library : m_loaded) {
    if (ITypeLib* const loaded = library.exchange(nullptr)) {
      loaded->Release();
    }
  }
}

CWideString InterfaceLibraryPath(const ObjectMap& objects, HINSTANCE instance) {
  return JoinPath(FolderOf(ModulePath(instance)), objects.interfaceLibraryFile);
}
