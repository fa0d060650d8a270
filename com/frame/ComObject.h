#pragma once

#include <new>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/InterfaceMap.h"
#include "com/frame/ModuleLock.h"
#include "common/ComPtr.h"

/// Base of every COM object's implementation. An implementation leaves IUnknown to the forms below,
/// names its interfaces in `InterfaceMap`, and may hide FinalConstruct.
class CComObjectRoot {
 public:
  CComObjectRoot(const CComObjectRoot&) = delete;
  CComObjectRoot& operator=(const CComObjectRoot&) = delete;

  /// Second step of construction, run once the object is whole; a failure ends its creation.
  HRESULT FinalConstruct() noexcept { return S_OK; }

 protected:
  CComObjectRoot() noexcept = default;
  ~CComObjectRoot() = default;
};

/// Interlocked reference count that begins at 1 and holds the DLL's lock while it lives:
/// a base or member that comes before the implementation, and so goes after it.
class CComReferenceCount {
 public:
  CComReferenceCount() noexcept { ModuleLock::Add(); }
  ~CComReferenceCount() { ModuleLock::Remove(); }
  CComReferenceCount(const CComReferenceCount&) = delete;
  CComReferenceCount& operator=(const CComReferenceCount&) = delete;

  ULONG Increment() noexcept { return static_cast<ULONG>(::InterlockedIncrement(&m_count)); }
  ULONG Decrement() noexcept { return static_cast<ULONG>(::InterlockedDecrement(&m_count)); }

 private:
  LONG m_count = 1;
};

/// Stand-alone form of an implementation.
template <class Base>
class CComObject final : private CComReferenceCount, public Base {
 public:
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    return Base::InterfaceMap::Query(static_cast<Base*>(this), iid, out);
  }
  STDMETHOD_(ULONG, AddRef)() override { return this->Increment(); }
  STDMETHOD_(ULONG, Release)() override {
    const ULONG left = this->Decrement();
    if (left == 0) {
      delete this;
    }
    return left;
  }

  /// A new object with one reference. A final construction that fails leaves `object` as it is; its
  /// answer is returned, with the error object that it made. Throws std::bad_alloc.
  static HRESULT TryCreate(CComPtr<CComObject>& object) {
    auto made = CComPtr<CComObject>::Adopt(new CComObject);
    const HRESULT hr = made->FinalConstruct();
    if (SUCCEEDED(hr)) {
      object = std::move(made);
    }
    return hr;
  }

  /// The same for a caller that reports failures itself: what final construction answers is raised.
  static CComPtr<CComObject> Create() {
    CComPtr<CComObject> object;
    RaiseIfFailed(TryCreate(object));
    return object;
  }
};

/// Form of an implementation that lives inside an aggregated object: its IUnknown is the outer one.
template <class Base>
class CComContainedObject final : public Base {
 public:
  explicit CComContainedObject(IUnknown* outer) : m_outer(outer) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    return m_outer->QueryInterface(iid, out);
  }
  STDMETHOD_(ULONG, AddRef)() override { return m_outer->AddRef(); }
  STDMETHOD_(ULONG, Release)() override { return m_outer->Release(); }

 private:
  IUnknown* m_outer;  // outlives this object, so no reference is held
};

/// Aggregated form: the non-delegating IUnknown that the outer object holds, around a contained
/// form.
template <class Base>
class CComAggObject final : public IUnknown {
 public:
  explicit CComAggObject(IUnknown* outer) : m_contained(outer) {}
  virtual ~CComAggObject() = default;

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    if (iid != __uuidof(IUnknown)) {
      return Base::InterfaceMap::Query(static_cast<Base*>(&m_contained), iid, out);
    }
    if (!out) {
      return E_POINTER;
    }
    AddRef();
    *out = static_cast<IUnknown*>(this);
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return m_references.Increment(); }
  STDMETHOD_(ULONG, Release)() override {
    const ULONG left = m_references.Decrement();
    if (left == 0) {
      delete this;
    }
    return left;
  }

  HRESULT FinalConstruct() noexcept { return m_contained.FinalConstruct(); }

 private:
  CComReferenceCount m_references;
  CComContainedObject<Base> m_contained;
};

/// A new object, finally constructed; it goes if that fails. Throws std::bad_alloc.
template <class Object, class... Arguments>
HRESULT NewComObject(REFIID iid, void** out, Arguments... arguments) {
  const auto object = CComPtr<Object>::Adopt(new Object(arguments...));
  const HRESULT hr = object->FinalConstruct();
  return FAILED(hr) ? hr : object->QueryInterface(iid, out);
}

/// Creator of the class factories: the stand-alone form, or with an outer object the aggregated
/// one. E_POINTER for a null `out`, which is cleared first; E_OUTOFMEMORY; what final construction
/// answers, whose report of a failure stays as it is.
template <class Base>
HRESULT CreateComObject(IUnknown* outer, REFIID iid, void** out) noexcept {
  return FillOut(GUID_NULL, out, [&]() -> HRESULT {
    return outer ? NewComObject<CComAggObject<Base>>(iid, out, outer)
                 : NewComObject<CComObject<Base>>(iid, out);
  });
}
