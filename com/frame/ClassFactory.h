#pragma once

#include "com/frame/ObjectMap.h"

namespace qm::com {

/// The class factory of one coclass. ComServer creates it once and holds one reference, which does
/// not keep the DLL loaded. References that clients hold do, and so does LockServer.
class ClassFactory final : public IClassFactory {
 public:
  ClassFactory(const ObjectMapEntry& entry, ClassFactory* next) noexcept
      : m_entry(entry), m_next(next) {}

  const ObjectMapEntry& Entry() const noexcept { return m_entry; }
  ClassFactory* Next() const noexcept { return m_next; }

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override;
  STDMETHOD_(ULONG, AddRef)() override;
  STDMETHOD_(ULONG, Release)() override;
  /// Fails with E_POINTER for a null `out`, with CLASS_E_NOAGGREGATION if an outer object asks for
  /// anything but IUnknown, or with the creator's HRESULT.
  STDMETHOD(CreateInstance)(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHOD(LockServer)(BOOL lock) override;

 private:
  virtual ~ClassFactory() = default;

  const ObjectMapEntry& m_entry;
  ClassFactory* m_next;
  LONG m_references = 1;
};

}  // namespace qm::com
