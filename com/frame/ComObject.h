#pragma once

#include <new>
#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/DllLock.h"
#include "com/frame/InterfaceMap.h"
#include "common/ComPtr.h"

namespace qm::com {

/// Base of every COM object's implementation. The forms below implement IUnknown for it. An
/// implementation lists its interfaces in a member type `InterfaceMap`, and may hide
/// FinalConstruct.
class ComObjectRoot {
 public:
  ComObjectRoot(const ComObjectRoot&) = delete;
  ComObjectRoot& operator=(const ComObjectRoot&) = delete;

  /// Second step of construction, called once the object is complete. If it fails, the object is
  /// destroyed.
  HRESULT FinalConstruct() noexcept { return S_OK; }

 protected:
  ComObjectRoot() noexcept = default;
  ~ComObjectRoot() = default;
};

/// Interlocked reference count that starts at 1 and keeps the DLL loaded while it lives. Declare it
/// before the implementation, as a base or a member, so that it is destroyed last.
class ReferenceCount {
 public:
  ReferenceCount() noexcept { DllLock::Add(); }
  ~ReferenceCount() { DllLock::Remove(); }
  ReferenceCount(const ReferenceCount&) = delete;
  ReferenceCount& operator=(const ReferenceCount&) = delete;

  ULONG Increment() noexcept { return static_cast<ULONG>(::InterlockedIncrement(&m_count)); }
  ULONG Decrement() noexcept { return static_cast<ULONG>(::InterlockedDecrement(&m_count)); }

 private:
  LONG m_count = 1;
};

/// The stand-alone form of an implementation.
template <class Base>
class ComObject final : private ReferenceCount, public Base {
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

  /// Creates an object with one reference and returns the result of FinalConstruct. If that fails,
  /// `object` is unchanged and the error object that FinalConstruct set stays. Throws
  /// std::bad_alloc.
  static HRESULT TryCreate(common::ComPtr<ComObject>& object) {
    auto made = common::ComPtr<ComObject>::Adopt(new ComObject);
    const HRESULT hr = made->FinalConstruct();
    if (SUCCEEDED(hr)) {
      object = std::move(made);
    }
    return hr;
  }

  /// The same, but raises the failure of FinalConstruct.
  static common::ComPtr<ComObject> Create() {
    common::ComPtr<ComObject> object;
    RaiseIfFailed(TryCreate(object));
    return object;
  }
};

/// Creates an object in its stand-alone form and calls its Init. The caller owns the reference.
template <class Object, class... Content>
ComObject<Object>* MakeObject(Content&&... content) {
  auto object = ComObject<Object>::Create();
  object->Init(std::forward<Content>(content)...);
  return object.Detach();
}

/// The form of an implementation inside an aggregated object. It delegates IUnknown to the outer
/// object.
template <class Base>
class ComContainedObject final : public Base {
 public:
  explicit ComContainedObject(IUnknown* outer) : m_outer(outer) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    return m_outer->QueryInterface(iid, out);
  }
  STDMETHOD_(ULONG, AddRef)() override { return m_outer->AddRef(); }
  STDMETHOD_(ULONG, Release)() override { return m_outer->Release(); }

 private:
  IUnknown* m_outer;  // outlives this object, so no reference is held
};

/// The aggregated form of an implementation: the non-delegating IUnknown that the outer object
/// holds, around the contained form.
template <class Base>
class ComAggObject final : public IUnknown {
 public:
  explicit ComAggObject(IUnknown* outer) : m_contained(outer) {}
  virtual ~ComAggObject() = default;

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
  ReferenceCount m_references;
  ComContainedObject<Base> m_contained;
};

/// Creates an object and queries it for `iid`. Destroys it if FinalConstruct or the query fails.
/// Throws std::bad_alloc.
template <class Object, class... Arguments>
HRESULT CreateAndQuery(REFIID iid, void** out, Arguments... arguments) {
  const auto object = common::ComPtr<Object>::Adopt(new Object(arguments...));
  const HRESULT hr = object->FinalConstruct();
  return FAILED(hr) ? hr : object->QueryInterface(iid, out);
}

/// Creates an object for a class factory: in the aggregated form if there is an outer object,
/// otherwise in the stand-alone form. Clears `*out` first. Fails with E_POINTER for a null `out`,
/// E_OUTOFMEMORY, E_NOINTERFACE, or the failure of FinalConstruct, whose error object stays.
template <class Base>
HRESULT CreateComObject(IUnknown* outer, REFIID iid, void** out) noexcept {
  return FillOut(GUID_NULL, out, [&]() -> HRESULT {
    return outer ? CreateAndQuery<ComAggObject<Base>>(iid, out, outer)
                 : CreateAndQuery<ComObject<Base>>(iid, out);
  });
}

}  // namespace qm::com
