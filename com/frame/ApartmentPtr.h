#pragma once

#include <windows.h>

#include <utility>

#include "common/ComPtr.h"

namespace qm::com {

/// An owned reference to an object, with the thread in whose apartment the object lives.
struct ApartmentReference {
  IUnknown* object;
  DWORD thread;
  ApartmentReference* next;  ///< in the queue for ReleaseQueuedReferences
};

/// Releases the object if its thread is the calling one or has ended. Otherwise queues the
/// reference for ReleaseQueuedReferences. Null is ignored.
void ReleaseInApartment(ApartmentReference* reference) noexcept;

/// Releases the queued references of the calling thread and of threads that have ended.
void ReleaseQueuedReferences() noexcept;

/// A reference from state that all apartments share to an object of one apartment. Not thread-safe:
/// whatever guards the shared state guards the reference.
template <class T>
class ApartmentPtr {
 public:
  ApartmentPtr() noexcept = default;
  ApartmentPtr(const ApartmentPtr&) = delete;
  ApartmentPtr& operator=(const ApartmentPtr&) = delete;
  ~ApartmentPtr() { ReleaseInApartment(m_reference); }

  /// Returns the object if the calling thread set it, otherwise null.
  T* Get() const noexcept {
    const bool isHere = m_reference && m_reference->thread == ::GetCurrentThreadId();
    return isHere ? static_cast<T*>(m_reference->object) : nullptr;
  }

  /// Returns whether an object is held, in any apartment.
  bool IsSet() const noexcept { return m_reference != nullptr; }

  /// Replaces the held object by one of the calling thread's apartment. Throws std::bad_alloc.
  void Set(const common::ComPtr<T>& object) {
    auto* const reference = new ApartmentReference{object.Get(), ::GetCurrentThreadId(), nullptr};
    object->AddRef();
    ReleaseInApartment(std::exchange(m_reference, reference));
  }

 private:
  ApartmentReference* m_reference = nullptr;
};

}  // namespace qm::com
