#pragma once

#include <windows.h>

/// Lets one thread at a time, and with it one single-threaded apartment, at what the process
/// shares: the catalog's sources and records, the index tables, the siblings.
///
/// Passing is a matter of ownership and no lock: the owner may call any object, and pass again in a
/// call that comes in meanwhile. Whoever has to wait dispatches COM calls to its apartment, so that
/// an owner that calls an object there goes on. Waiting threads get their turn in the order in
/// which they came. A thread whose turn comes while a call that it dispatched is still running
/// owns the gate until that call is done; one that ends as the owner never gives it back.
class ApartmentGate {
 public:
  static constexpr DWORD kLimit = 30000;

  /// `limit` is the longest wait in milliseconds.
  constexpr explicit ApartmentGate(DWORD limit = kLimit) noexcept : m_limit(limit) {}
  ApartmentGate(const ApartmentGate&) = delete;
  ApartmentGate& operator=(const ApartmentGate&) = delete;
  ~ApartmentGate() = default;

  /// The gate of this DLL.
  static ApartmentGate& Instance() noexcept;

  /// Raises HRESULT_FROM_WIN32(ERROR_TIMEOUT) if the wait takes longer than the limit.
  void Enter();

  /// As Enter, if no other thread is the owner; false if one is.
  bool TryEnter() noexcept;

  /// Once for each time that this thread entered.
  void Leave() noexcept;

 private:
  struct Waiter;

  void Append(Waiter& waiter) noexcept;
  void Remove(Waiter& waiter) noexcept;
  bool Wait(Waiter& waiter);

  const DWORD m_limit;
  SRWLOCK m_lock = SRWLOCK_INIT;  ///< guards the rest, for a few instructions
  DWORD m_owner = 0;              ///< a thread identifier; 0 for nobody
  unsigned m_depth = 0;
  Waiter* m_first = nullptr;
};

/// The thread's stay behind the gate of this DLL. Construction raises as ApartmentGate::Enter does.
class CGatePass {
 public:
  CGatePass() { ApartmentGate::Instance().Enter(); }
  ~CGatePass() { ApartmentGate::Instance().Leave(); }
  CGatePass(const CGatePass&) = delete;
  CGatePass& operator=(const CGatePass&) = delete;
};
