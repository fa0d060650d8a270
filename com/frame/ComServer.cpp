#include "com/frame/ComServer.h"

#include <new>

#include "com/error/ErrorHandler.h"
#include "com/frame/ClassFactory.h"
#include "com/frame/TypeLibraries.h"
#include "common/ScopeGuard.h"

namespace qm::com {

ComServer& ComServer::Instance() noexcept {
  static ComServer module;
  return module;
}

ComServer::ComServer() noexcept { ::InitializeCriticalSectionAndSpinCount(&m_factoryCreation, 0); }

ComServer::~ComServer() { ::DeleteCriticalSection(&m_factoryCreation); }

void ComServer::PrepareThreadForExceptions() const noexcept {
  if (::TlsGetValue(m_preparedThreads)) {
    return;
  }
  try {
    throw 0;
  } catch (int) {  // NOLINT(bugprone-empty-catch): throwing is the purpose
  }
  ::TlsSetValue(m_preparedThreads, ::GetModuleHandleW(nullptr));  // any value but null
}

void ComServer::Init(const ObjectMap& objects, HINSTANCE instance) noexcept {
  PrepareThreadForExceptions();
  m_objects = objects;
  m_instance = instance;
  TypeLibraries::Instance().Init(objects, instance);
}

void ComServer::End() noexcept {
  while (ClassFactory* const factory = m_factories) {
    m_factories = factory->Next();
    factory->Release();
  }
}

HRESULT ComServer::GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept {
  PrepareThreadForExceptions();
  return FillOut(GUID_NULL, out, [&] {
    for (size_t i = 0; i < m_objects.count; ++i) {
      if (*m_objects.entries[i].clsid == clsid) {
        ClassFactory* const factory = GetOrCreateFactory(m_objects.entries[i]);
        return factory ? factory->QueryInterface(iid, out) : E_OUTOFMEMORY;
      }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

ClassFactory* ComServer::GetOrCreateFactory(const ObjectMapEntry& entry) noexcept {
  ::EnterCriticalSection(&m_factoryCreation);
  const common::ScopeGuard leave([this]() noexcept { ::LeaveCriticalSection(&m_factoryCreation); });
  for (ClassFactory* factory = m_factories; factory; factory = factory->Next()) {
    if (&factory->Entry() == &entry) {
      return factory;
    }
  }
  const bool isFirst = !m_factories;
  auto* const factory = new (std::nothrow) ClassFactory(entry, m_factories);
  if (factory) {
    m_factories = factory;
    if (isFirst) {
      Enlist();
    }
  }
  return factory;
}

}  // namespace qm::com
