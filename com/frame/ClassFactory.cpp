#include "com/frame/ClassFactory.h"

#include "com/error/ErrorHandler.h"
#include "com/frame/DllLock.h"
#include "com/frame/InterfaceMap.h"

HRESULT CComClassFactory::QueryInterface(REFIID iid, void** out) {
  return CInterfaceMap<Via<IClassFactory, IClassFactory>>::Query(this, iid, out);
}

ULONG CComClassFactory::AddRef() {
  const LONG count = ::InterlockedIncrement(&m_references);
  if (count == 2) {
    ModuleLock::Add();
  }
  return static_cast<ULONG>(count);
}

ULONG CComClassFactory::Release() {
  const LONG count = ::InterlockedDecrement(&m_references);
  if (count == 1) {
    ModuleLock::Remove();
  } else if (count == 0) {
    delete this;
  }
  return static_cast<ULONG>(count);
}

HRESULT CComClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  return FillOut(GUID_NULL, out, [&] {
    const bool refused = outer && iid != __uuidof(IUnknown);
    return refused ? CLASS_E_NOAGGREGATION : m_entry.create(outer, iid, out);
  });
}

HRESULT CComClassFactory::LockServer(BOOL lock) {
  if (lock) {
    ModuleLock::Add();
  } else {
    ModuleLock::Remove();
  }
  return S_OK;
}
