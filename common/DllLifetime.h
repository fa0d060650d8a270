#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace qm::common {

/// Destroys what the DLL keeps for its lifetime, in reverse order of creation: the objects of every
/// DllWide, class factories, type information. Anything used afterwards is created again.
///
/// Call it when the DLL is unloaded and no other thread uses it. Do not call it when the process
/// ends: nothing needs to be released then, and other DLLs may already be gone.
void EndDllLifetime() noexcept;

/// Base of the objects that EndDllLifetime ends. They are static objects: End releases what they
/// hold but does not delete them.
class DllLifetimeLink {
 public:
  DllLifetimeLink(const DllLifetimeLink&) = delete;
  DllLifetimeLink& operator=(const DllLifetimeLink&) = delete;

 protected:
  constexpr DllLifetimeLink() noexcept = default;
  ~DllLifetimeLink() = default;
  /// Makes EndDllLifetime call End. Call it once there is something to end, and not again before
  /// End. Thread-safe.
  void Enlist() noexcept;

 private:
  friend void EndDllLifetime() noexcept;
  virtual void End() noexcept = 0;

  DllLifetimeLink* m_next = nullptr;
};

/// Holds a singleton of this DLL from its first use until EndDllLifetime. Get and Find are
/// thread-safe. A static DllWide is initialised at compile time and has no destructor that runs
/// at exit.
template <class T>
class DllWide final : private DllLifetimeLink {
 public:
  constexpr DllWide() noexcept = default;

  /// Returns the object. The first call creates it by `make`, which returns a T* from new. If
  /// `make` throws, the next call tries again. If several threads create it at once, one of the
  /// objects is kept.
  template <class Make>
  T& Get(Make make) {
    T* object = m_object;
    if (!object) {
      std::unique_ptr<T> made(make());
      if (m_object.compare_exchange_strong(object, made.get())) {
        object = made.release();
        Enlist();
      }
    }
    return *object;
  }

  /// Returns the object, or null if it has not been created.
  T* Find() const noexcept { return m_object; }

 private:
  void End() noexcept override { delete m_object.exchange(nullptr); }

  std::atomic<T*> m_object = nullptr;
};

}  // namespace qm::common
