#pragma once

#include "com/frame/ObjectMap.h"

/// Class factory of one coclass. The module makes it once and holds it with one reference, which
/// does not count as a lock; references that clients hold do, as LockServer does.
/// The critical section around its one-time creation, with spin count 0, is the module's: no
/// factory is there yet that could hold it.
class CComClassFactory final : public IClassFactory {
 public:
  CComClassFactory(const ObjectMapEntry& entry, CComClassFactory* next) noexcept
      : m_entry(entry), m_next(next) {}

  const ObjectMapEntry& Entry() const noexcept { return m_entry; }
  CComClassFactory* Next() const noexcept { return m_next; }

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override;
  STDMETHOD_(ULONG, AddRef)() override;
  STDMETHOD_(ULONG, Release)() override;
  /// E_POINTER for a null `out`; CLASS_E_NOAGGREGATION when an outer object asks for anything but
  /// IUnknown; what the creator answers.
  STDMETHOD(CreateInstance)(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHOD(LockServer)(BOOL lock) override;

 private:
  virtual ~CComClassFactory() = default;

  const ObjectMapEntry& m_entry;
  CComClassFactory* m_next;
  LONG m_references = 1;
};
