#include "com/frame/ClassFactory.h"

#include "com/frame/InterfaceMap.h"

HRESULT CComClassFactory::QueryInterface(REFIID iid, void** out) {
  return CInterfaceMap<Via<IClassFactory, IClassFactory>>::Query(this, iid, out);
}

ULONG CComClassFactory::AddRef() {
  const LONG count = ::InterlockedIncrement(&m_references);
  if (count == 2) {
    CComModule::Instance().Lock();
  }
  return static_cast<ULONG>(count);
}

ULONG CComClassFactory::Release() {
  const LONG count = ::InterlockedDecrement(&m_references);
  if (count == 1) {
    CComModule::Instance().Unlock();
  } else if (count == 0) {
    delete this;
  }
  return static_cast<ULONG>(count);
}

HRESULT CComClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  if (!out) {
    return E_POINTER;
  }
  *out = nullptr;
  if (outer && iid != __uuidof(IUnknown)) {
    return CLASS_E_NOAGGREGATION;
  }
  return m_entry.create(outer, iid, out);
}

HRESULT CComClassFactory::LockServer(BOOL lock) {
  if (lock) {
    CComModule::Instance().Lock();
  } else {
    CComModule::Instance().Unlock();
  }
  return S_OK;
}
