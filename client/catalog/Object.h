#pragma once

#include <windows.h>

namespace mmcat {

/// Counts the references to an object of one interface, which belongs to one thread.
template <class Interface>
class Object : public Interface {
 public:
  Object() = default;
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  STDMETHOD_(ULONG, AddRef)() override { return ++m_references; }
  STDMETHOD_(ULONG, Release)() override {
    const ULONG left = --m_references;
    if (left == 0) {
      delete this;
    }
    return left;
  }

 protected:
  /// Answers QueryInterface for IUnknown and the given interfaces, bases of `Interface`.
  template <class... Interfaces>
  HRESULT Query(REFIID iid, void** out) {
    if (!out) {
      return E_POINTER;
    }
    const bool isKnown = iid == __uuidof(IUnknown) || (... || (iid == __uuidof(Interfaces)));
    *out = isKnown ? static_cast<Interface*>(this) : nullptr;
    if (!isKnown) {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }

 private:
  ULONG m_references = 1;
};

/// The same for an automation interface. There is no type information, so callers must use the
/// virtual table.
template <class Interface>
class DispatchObject : public Object<Interface> {
 public:
  STDMETHOD(GetTypeInfoCount)(UINT* count) override {
    if (!count) {
      return E_POINTER;
    }
    *count = 0;
    return S_OK;
  }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHOD(Invoke)
  (DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
};

}  // namespace mmcat
