#include "com/frame/ComModule.h"

#include <new>
#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/ClassFactory.h"
#include "com/frame/DispatchImpl.h"
#include "common/ComPtr.h"
#include "common/Path.h"

namespace {

class CSectionLock {
 public:
  explicit CSectionLock(CRITICAL_SECTION& section) noexcept : m_section(section) {
    ::EnterCriticalSection(&m_section);
  }
  ~CSectionLock() { ::LeaveCriticalSection(&m_section); }
  CSectionLock(const CSectionLock&) = delete;
  CSectionLock& operator=(const CSectionLock&) = delete;

 private:
  CRITICAL_SECTION& m_section;
};

HRESULT LoadLibraryOrRegistered(const CWideString& path, REFGUID libid, ITypeLib** out) noexcept {
  const HRESULT hr = ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, out);
  return SUCCEEDED(hr) ? hr : ::LoadRegTypeLib(libid, 1, 0, LOCALE_NEUTRAL, out);
}

}  // namespace

CComModule& CComModule::Instance() noexcept {
  static CComModule module;
  return module;
}

CComModule::CComModule() noexcept {
  ::InitializeCriticalSectionAndSpinCount(&m_factoryCreation, 0);
}

CComModule::~CComModule() {
  ::TlsFree(m_preparedThreads);
  ::DeleteCriticalSection(&m_factoryCreation);
}

void CComModule::PrepareThreadForExceptions() const noexcept {
  if (::TlsGetValue(m_preparedThreads)) {
    return;
  }
  try {
    throw 0;
  } catch (int) {  // NOLINT(bugprone-empty-catch): throwing was the point
  }
  ::TlsSetValue(m_preparedThreads, ::GetModuleHandleW(nullptr));  // anything but null
}

void CComModule::Init(const ObjectMap& objects, HINSTANCE instance) noexcept {
  PrepareThreadForExceptions();
  m_objects = objects;
  m_instance = instance;
}

void CComModule::Term() noexcept {
  while (CComClassFactory* const factory = m_factories) {
    m_factories = factory->Next();
    factory->Release();
  }
  while (CTypeInfoHolder* const holder = m_typeInfoHolders) {
    m_typeInfoHolders = holder->Clear();
  }
  for (ITypeLib*& library : m_typeLibraries) {
    if (ITypeLib* const loaded = std::exchange(library, nullptr)) {
      loaded->Release();
    }
  }
}

HRESULT CComModule::GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept {
  if (!out) {
    return E_POINTER;
  }
  *out = nullptr;
  PrepareThreadForExceptions();
  for (size_t i = 0; i < m_objects.count; ++i) {
    if (*m_objects.entries[i].clsid == clsid) {
      CComClassFactory* const factory = FindOrMakeFactory(m_objects.entries[i]);
      return factory ? factory->QueryInterface(iid, out) : E_OUTOFMEMORY;
    }
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

CComClassFactory* CComModule::FindOrMakeFactory(const ObjectMapEntry& entry) noexcept {
  const CSectionLock lock(m_factoryCreation);
  for (CComClassFactory* factory = m_factories; factory; factory = factory->Next()) {
    if (&factory->Entry() == &entry) {
      return factory;
    }
  }
  auto* const factory = new (std::nothrow) CComClassFactory(entry, m_factories);
  if (factory) {
    m_factories = factory;
  }
  return factory;
}

HRESULT CComModule::GetTypeLibrary(TypeLibrary library, ITypeLib** out) noexcept {
  ITypeLib*& loaded = m_typeLibraries[static_cast<size_t>(library)];
  if (!loaded) {
    const bool fromFile = library == TypeLibrary::Interfaces && m_objects.interfaceLibrary;
    const GUID* const libid = fromFile ? m_objects.interfaceLibrary : m_objects.classLibrary;
    if (!libid) {
      return TYPE_E_LIBNOTREGISTERED;  // before Init
    }
    const HRESULT hr = RunAtBoundary(GUID_NULL, [&] {
      return LoadLibraryOrRegistered(
          fromFile ? InterfaceLibraryPath(m_objects, m_instance) : ModulePath(m_instance), *libid,
          &loaded);
    });
    if (FAILED(hr)) {
      return hr;
    }
  }
  loaded->AddRef();
  *out = loaded;
  return S_OK;
}

void CComModule::Adopt(CTypeInfoHolder& holder) noexcept {
  holder.ChainTo(std::exchange(m_typeInfoHolders, &holder));
}

CWideString ModulePath(HINSTANCE instance) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        ::GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) {
      RaiseLastError();
    }
    if (length < path.size()) {
      return CWideString(path.c_str(), length);
    }
    path.resize(path.size() * 2);
  }
}

CWideString InterfaceLibraryPath(const ObjectMap& objects, HINSTANCE instance) {
  return JoinPath(FolderOf(ModulePath(instance)), objects.interfaceLibraryFile);
}
