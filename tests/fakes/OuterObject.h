#pragma once

#include <windows.h>

#include "common/ComPtr.h"

namespace qm::tests {

/// An object that aggregates another one: hands out its interfaces and counts its own references.
class OuterObject final : public IUnknown {
 public:
  virtual ~OuterObject() = default;
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    if (iid != __uuidof(IUnknown)) {
      return inner ? inner->QueryInterface(iid, out) : E_NOINTERFACE;
    }
    *out = this;
    AddRef();
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return ++references; }
  STDMETHOD_(ULONG, Release)() override { return --references; }

  common::ComPtr<IUnknown> inner;
  ULONG references = 1;
};

}  // namespace qm::tests
