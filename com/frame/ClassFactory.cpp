#include "com/frame/ClassFactory.h"

#include "com/error/ErrorHandler.h"
#include "com/frame/DllLock.h"
#include "com/frame/InterfaceMap.h"

namespace qm::com {

HRESULT ClassFactory::QueryInterface(REFIID iid, void** out) {
  return InterfaceMap<Via<IClassFactory, IClassFactory>>::Query(this, iid, out);
}

ULONG ClassFactory::AddRef() {
  const LONG count = ::InterlockedIncrement(&m_references);
  if (count == 2) {
    DllLock::Add();
  }
  return static_cast<ULONG>(count);
}

ULONG ClassFactory::Release() {
  const LONG count = ::InterlockedDecrement(&m_references);
  if (count == 1) {
    DllLock::Remove();
  } else if (count == 0) {
    delete this;
  }
  return static_cast<ULONG>(count);
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  return FillOut(GUID_NULL, out, [&] {
    const bool refused = outer && iid != __uuidof(IUnknown);
    return refused ? CLASS_E_NOAGGREGATION : m_entry.create(outer, iid, out);
  });
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  if (lock) {
    DllLock::Add();
  } else {
    DllLock::Remove();
  }
  return S_OK;
}

}  // namespace qm::com
