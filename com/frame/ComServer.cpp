#include "com/frame/ComServer.h"

#include <new>

#include "com/error/ErrorHandler.h"
#include "com/frame/ClassFactory.h"
#include "com/frame/TypeLibraries.h"
#include "common/ScopeGuard.h"

CComModule& CComModule::Instance() noexcept {
  static CComModule module;
  return module;
}

CComModule::CComModule() noexcept {
  ::InitializeCriticalSectionAndSpinCount(&m_factoryCreation, 0);
}

CComModule::~CComModule() { ::DeleteCriticalSection(&m_factoryCreation); }

void CComModule::PrepareThreadForExceptions() const noexcept {
  if (::TlsGetValue(m_preparedThreads)) {
    return;
  }
  try {
    throw 0;
  } catch (int) {  // NOLINT(bugprone-empty-catch): throwing is the purpose
  }
  ::TlsSetValue(m_preparedThreads, ::GetModuleHandleW(nullptr));  // any value but null
}

void CComModule::Init(const ObjectMap& objects, HINSTANCE instance) noexcept {
  PrepareThreadForExceptions();
  m_objects = objects;
  m_instance = instance;
  TypeLibraries::Instance().Init(objects, instance);
}

void CComModule::End() noexcept {
  while (CComClassFactory* const factory = m_factories) {
    m_factories = factory->Next();
    factory->Release();
  }
}

HRESULT CComModule::GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept {
  PrepareThreadForExceptions();
  return FillOut(GUID_NULL, out, [&] {
    for (size_t i = 0; i < m_objects.count; ++i) {
      if (*m_objects.entries[i].clsid == clsid) {
        CComClassFactory* const factory = FindOrMakeFactory(m_objects.entries[i]);
        return factory ? factory->QueryInterface(iid, out) : E_OUTOFMEMORY;
      }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

CComClassFactory* CComModule::FindOrMakeFactory(const ObjectMapEntry& entry) noexcept {
  ::EnterCriticalSection(&m_factoryCreation);
  const ScopeGuard leave([this]() noexcept { ::LeaveCriticalSection(&m_factoryCreation); });
  for (CComClassFactory* factory = m_factories; factory; factory = factory->Next()) {
    if (&factory->Entry() == &entry) {
      return factory;
    }
  }
  const bool isFirst = !m_factories;
  auto* const factory = new (std::nothrow) CComClassFactory(entry, m_factories);
  if (factory) {
    m_factories = factory;
    if (isFirst) {
      Enlist();
    }
  }
  return factory;
}
