#pragma once

#include <utility>

#include "common/LastError.h"

/// The one owner of a handle. Traits give the handle's type, its closer and the value that means
/// none:
///
///   struct KeyTraits {
///     using Handle = HKEY;
///     static constexpr Handle None() noexcept;
///     static void Close(Handle) noexcept;
///   };
template <class Traits>
class CUniqueHandle {
 public:
  using Handle = typename Traits::Handle;

  CUniqueHandle() noexcept = default;
  explicit CUniqueHandle(Handle handle) noexcept : m_handle(handle) {}
  CUniqueHandle(CUniqueHandle&& other) noexcept : m_handle(other.Release()) {}
  CUniqueHandle& operator=(CUniqueHandle&& other) noexcept {
    if (this != &other) {
      Reset(other.Release());
    }
    return *this;
  }
  CUniqueHandle(const CUniqueHandle&) = delete;
  CUniqueHandle& operator=(const CUniqueHandle&) = delete;
  ~CUniqueHandle() { Reset(); }

  explicit operator bool() const noexcept { return m_handle != Traits::None(); }
  Handle Get() const noexcept { return m_handle; }

  /// Closes what is held and takes over `handle`. The thread's last-error code stays as it is: what
  /// failed before is often asked for afterwards.
  void Reset(Handle handle = Traits::None()) noexcept {
    const Handle old = std::exchange(m_handle, handle);
    if (old != Traits::None()) {
      const CLastErrorKeeper keeper;
      Traits::Close(old);
    }
  }

  /// Gives the handle up without closing it.
  Handle Release() noexcept { return std::exchange(m_handle, Traits::None()); }

  /// Closes what is held; the address receives a new handle.
  Handle* Put() noexcept {
    Reset();
    return &m_handle;
  }

 private:
  Handle m_handle = Traits::None();
};
