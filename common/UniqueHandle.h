#pragma once

#include <utility>

#include "common/LastError.h"

namespace qm::common {

/// Owns a handle. Traits define its type, how to close it, and the value that means no handle:
///
///   struct KeyTraits {
///     using Handle = HKEY;
///     static constexpr Handle None() noexcept;
///     static void Close(Handle) noexcept;
///   };
template <class Traits>
class UniqueHandle {
 public:
  using Handle = typename Traits::Handle;

  UniqueHandle() noexcept = default;
  explicit UniqueHandle(Handle handle) noexcept : m_handle(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : m_handle(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) {
      Reset(other.Release());
    }
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  explicit operator bool() const noexcept { return m_handle != Traits::None(); }
  Handle Get() const noexcept { return m_handle; }

  /// Closes the held handle and takes ownership of `handle`. Preserves the thread's last-error
  /// code, because callers often ask for the code of an earlier failure afterwards.
  void Reset(Handle handle = Traits::None()) noexcept {
    const Handle old = std::exchange(m_handle, handle);
    if (old != Traits::None()) {
      const ScopedLastError keeper;
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

}  // namespace qm::common
