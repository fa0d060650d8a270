#include "com/frame/ApartmentPtr.h"

#include "common/ExclusiveLock.h"
#include "common/UniqueHandle.h"

namespace qm::com {

namespace {

struct ThreadTraits {
  using Handle = HANDLE;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle thread) noexcept { ::CloseHandle(thread); }
};

SRWLOCK theLock = SRWLOCK_INIT;
ApartmentReference* theReturned = nullptr;

/// Returns whether the calling thread may release an object of `thread`.
bool MayRelease(DWORD thread) noexcept {
  if (thread == ::GetCurrentThreadId()) {
    return true;
  }
  const common::UniqueHandle<ThreadTraits> owner(::OpenThread(SYNCHRONIZE, FALSE, thread));
  if (!owner) {
    return ::GetLastError() == ERROR_INVALID_PARAMETER;  // there is no such thread
  }
  return ::WaitForSingleObject(owner.Get(), 0) == WAIT_OBJECT_0;
}

void Release(ApartmentReference* reference) noexcept {
  reference->object->Release();
  delete reference;
}

}  // namespace

void ReleaseInApartment(ApartmentReference* reference) noexcept {
  if (!reference) {
    return;
  }
  if (MayRelease(reference->thread)) {
    Release(reference);
    return;
  }
  const common::ExclusiveLock lock(theLock);
  reference->next = theReturned;
  theReturned = reference;
}

void ReleaseQueuedReferences() noexcept {
  ApartmentReference* returned = nullptr;
  {
    const common::ExclusiveLock lock(theLock);
    returned = theReturned;
    theReturned = nullptr;
  }
  while (returned) {
    ApartmentReference* const next = returned->next;
    ReleaseInApartment(returned);
    returned = next;
  }
}

}  // namespace qm::com
