#include "com/frame/TypeLibraries.h"

#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/frame/DllPath.h"
#include "common/ComPtr.h"
#include "common/ExclusiveLock.h"
#include "common/Path.h"

namespace qm::com {

namespace {

TypeLibraries theLibraries;

HRESULT LoadTypeLibrary(const common::WideString& path, REFGUID libid, ITypeLib** out) noexcept {
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
    common::ComPtr<ITypeLib> loaded;
    const HRESULT hr = RunAtBoundary(GUID_NULL, [&] {
      return LoadTypeLibrary(
          fromFile ? GetInterfaceLibraryPath(m_objects, m_instance) : DllPath(m_instance), *libid,
          loaded.Put());
    });
    if (FAILED(hr)) {
      return hr;
    }
    const common::ExclusiveLock lock(m_lock);
    if (!kept) {
      kept = loaded.Detach();
      if (!std::exchange(m_isEnlisted, true)) {
        Enlist();
      }
    }
  }
  *out = common::ComPtr<ITypeLib>(kept).Detach();
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

common::WideString GetInterfaceLibraryPath(const ObjectMap& objects, HINSTANCE instance) {
  return common::JoinPath(common::ParentFolder(DllPath(instance)), objects.interfaceLibraryFile);
}

}  // namespace qm::com
