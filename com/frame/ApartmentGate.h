#pragma once

#include <windows.h>

namespace qm::com {

/// Admits one thread at a time, and with it one single-threaded apartment, to the state that the
/// process shares: the catalog's sources and records, the index tables, the siblings.
///
/// The gate is owned rather than locked. Its owner may call any object, and may enter again in a
/// call that comes in meanwhile. A waiting thread dispatches COM calls to its apartment, so an
/// owner that calls an object there can go on. Waiting threads are admitted in the order of their
/// arrival. A thread that is admitted while it runs a dispatched call owns the gate from then on,
/// although its wait returns only after that call. If a thread ends while it owns the gate, the
/// gate is never free again.
class ApartmentGate {
 public:
  static constexpr DWORD kTimeoutMs = 30000;

  /// `limit` is the longest wait in milliseconds.
  constexpr explicit ApartmentGate(DWORD limit = kTimeoutMs) noexcept : m_timeoutMs(limit) {}
  ApartmentGate(const ApartmentGate&) = delete;
  ApartmentGate& operator=(const ApartmentGate&) = delete;
  ~ApartmentGate() = default;

  /// The gate of this DLL.
  static ApartmentGate& Instance() noexcept;

  /// Waits until the calling thread owns the gate. Raises HRESULT_FROM_WIN32(ERROR_TIMEOUT) if that
  /// takes longer than the limit.
  void Enter();

  /// Enters if no other thread owns the gate; otherwise returns false.
  bool TryEnter() noexcept;

  /// Call once for each time that this thread entered.
  void Leave() noexcept;

 private:
  struct Waiter;

  void Append(Waiter& waiter) noexcept;
  void Remove(Waiter& waiter) noexcept;
  bool WaitForTurn(Waiter& waiter);

  const DWORD m_timeoutMs;
  SRWLOCK m_lock = SRWLOCK_INIT;  ///< guards the members below; held for a few instructions
  DWORD m_owner = 0;              ///< thread identifier; 0 if there is no owner
  unsigned m_depth = 0;           ///< how often the owner has entered
  Waiter* m_first = nullptr;      ///< queue of the waiting threads
};

/// Owns the gate of this DLL while in scope. Construction raises as ApartmentGate::Enter does.
class ScopedGateEntry {
 public:
  ScopedGateEntry() { ApartmentGate::Instance().Enter(); }
  ~ScopedGateEntry() { ApartmentGate::Instance().Leave(); }
  ScopedGateEntry(const ScopedGateEntry&) = delete;
  ScopedGateEntry& operator=(const ScopedGateEntry&) = delete;
};

}  // namespace qm::com
