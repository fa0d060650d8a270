#pragma once

#include <utility>

#include "common/LastError.h"

/// Owns a handle. Traits define its type, how to close it, and the value that means no handle:
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

  /// Closes the held handle and takes ownership of `handle`. Preserves the thread's last-error
  /// code, because callers often ask for the code of an earlier failure afterwards.
  void Reset(Handle handle = Traits::None()) noexcept {
    const Handle old = std::exchange(m_handle, handle);
    if (old != Traits::None()) {
      const CLastErrorKeeper keeper;
      Traits::Close(old);
    }
  }

  /// Gives up ownership without closing the handle.
  Handle Release() noexcept { return std::exchange(m_handle, Traits::None()); }

  /// Closes the held handle and returns the address for an out parameter.
  Handle* Put() noexcept {
    Reset();
    return &m_handle;
  }

 private:
  Handle m_handle = Traits::None();
};
