#pragma once

#include <windows.h>

#include <utility>

#include "common/ComPtr.h"

/// A reference on an object, together with the thread in whose apartment the object lives.
struct ApartmentReference {
  IUnknown* object;
  DWORD thread;
  ApartmentReference* next;
};

/// Releases the object if its thread is the calling one, or has ended; otherwise keeps it for
/// ReleaseReturnedReferences. Null is skipped.
void ReturnReference(ApartmentReference* reference) noexcept;

/// Releases what was returned for the calling thread, and for threads that have ended.
void ReleaseReturnedReferences() noexcept;

/// A reference that something which all apartments share holds on an object of one of them. Not
/// guarded by itself.
template <class T>
class CApartmentPtr {
 public:
  CApartmentPtr() noexcept = default;
  CApartmentPtr(const CApartmentPtr&) = delete;
  CApartmentPtr& operator=(const CApartmentPtr&) = delete;
  ~CApartmentPtr() { ReturnReference(m_reference); }

  /// The object in the apartment in which it was set; null in any other.
  T* Get() const noexcept {
    const bool isHere = m_reference && m_reference->thread == ::GetCurrentThreadId();
    return isHere ? static_cast<T*>(m_reference->object) : nullptr;
  }

  /// Whether there is an object, in whatever apartment.
  bool IsSet() const noexcept { return m_reference != nullptr; }

  /// Holds an object of the calling thread's apartment in place of what is held. Throws
  /// std::bad_alloc.
  void Set(const CComPtr<T>& object) {
    auto* const reference = new ApartmentReference{object.Get(), ::GetCurrentThreadId(), nullptr};
    object->AddRef();
    ReturnReference(std::exchange(m_reference, reference));
  }

 private:
  ApartmentReference* m_reference = nullptr;
};
