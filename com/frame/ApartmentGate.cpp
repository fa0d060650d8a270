#include "com/frame/ApartmentGate.h"

#include <utility>

#include "com/error/Raise.h"
#include "common/ExclusiveLock.h"
#include "common/UniqueHandle.h"

namespace qm::com {

namespace {

struct EventTraits {
  using Handle = HANDLE;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle event) noexcept { ::CloseHandle(event); }
};

ApartmentGate theGate;

}  // namespace

/// One wait of a thread. A thread may have several, each in a call that it dispatched during the
/// previous wait.
struct ApartmentGate::Waiter {
  const DWORD thread = ::GetCurrentThreadId();
  const common::UniqueHandle<EventTraits> event{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
  bool isAdmitted = false;
  Waiter* next = nullptr;
};

ApartmentGate& ApartmentGate::Instance() noexcept { return theGate; }

bool ApartmentGate::TryEnter() noexcept {
  const DWORD thread = ::GetCurrentThreadId();
  const common::ExclusiveLock lock(m_lock);
  if (m_owner != 0 && m_owner != thread) {
    return false;
  }
  m_owner = thread;
  ++m_depth;
  return true;
}

void ApartmentGate::Enter() {
  if (TryEnter()) {
    return;
  }
  Waiter waiter;
  if (!waiter.event) {
    RaiseLastError();
  }
  {
    const common::ExclusiveLock lock(m_lock);
    if (m_owner == 0) {
      m_owner = waiter.thread;
      m_depth = 1;
      return;
    }
    Append(waiter);
  }
  if (!WaitForTurn(waiter)) {
    Raise(com_exception(
        HRESULT_FROM_WIN32(ERROR_TIMEOUT),
        common::WideString::Format(L"Other threads of this process have been using the "
                                   L"catalog for more than %u seconds.",
                                   static_cast<unsigned>(m_timeoutMs / 1000))));
  }
}

/// Returns false if the waiter was not admitted in time.
bool ApartmentGate::WaitForTurn(Waiter& waiter) {
  HANDLE event = waiter.event.Get();
  DWORD index = 0;
  const HRESULT hr = ::CoWaitForMultipleHandles(0, m_timeoutMs, 1, &event, &index);
  if (hr == CO_E_NOTINITIALIZED) {
    ::WaitForSingleObject(event, m_timeoutMs);  // a thread without an apartment receives no calls
  }
  ::SetErrorInfo(0, nullptr);  // a call dispatched meanwhile may have set it
  const common::ExclusiveLock lock(m_lock);
  if (!waiter.isAdmitted) {
    Remove(waiter);
  }
  return waiter.isAdmitted;
}

void ApartmentGate::Leave() noexcept {
  const common::ExclusiveLock lock(m_lock);
  if (--m_depth > 0) {
    return;
  }
  m_owner = 0;
  if (!m_first) {
    return;
  }
  // If the first waiting thread has several waits, only the innermost one can return. It is the
  // thread's last one in the list.
  Waiter* admitted = m_first;
  for (Waiter* waiter = m_first; waiter; waiter = waiter->next) {
    if (waiter->thread == m_first->thread) {
      admitted = waiter;
    }
  }
  Remove(*admitted);
  admitted->isAdmitted = true;
  m_owner = admitted->thread;
  m_depth = 1;
  ::SetEvent(admitted->event.Get());
}

void ApartmentGate::Append(Waiter& waiter) noexcept {
  Waiter** end = &m_first;
  while (*end) {
    end = &(*end)->next;
  }
  *end = &waiter;
}

void ApartmentGate::Remove(Waiter& waiter) noexcept {
  Waiter** link = &m_first;
  while (*link != &waiter) {
    link = &(*link)->next;
  }
  *link = std::exchange(waiter.next, nullptr);
}

}  // namespace qm::com
