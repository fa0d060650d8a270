#pragma once

#include <atomic>
#include <memory>
#include <utility>

/// Ends what the DLL keeps for its lifetime, what was made last first: the objects of all
/// CModuleWide, class factories, type information. For a DLL that is unloaded; not to be called
/// when the process ends, when nothing needs to be released and other DLLs are gone. What is used
/// again afterwards is made again.
void EndModuleLifetime() noexcept;

/// A link in the chain of what EndModuleLifetime ends; static objects, whose memory stays.
class CModuleLifetimeLink {
 public:
  CModuleLifetimeLink(const CModuleLifetimeLink&) = delete;
  CModuleLifetimeLink& operator=(const CModuleLifetimeLink&) = delete;

 protected:
  constexpr CModuleLifetimeLink() noexcept = default;
  ~CModuleLifetimeLink() = default;
  /// To be called once when there is something to end, and again after End only. Any thread may.
  void Enlist() noexcept;

 private:
  friend void EndModuleLifetime() noexcept;
  virtual void End() noexcept = 0;

  CModuleLifetimeLink* m_next = nullptr;
};

/// Holds the one object of its kind in this DLL, from its first use to the DLL's unloading. A
/// static CModuleWide needs no construction at load and has no destructor that runs at exit.
template <class T>
class CModuleWide final : private CModuleLifetimeLink {
 public:
  constexpr CModuleWide() noexcept = default;

  /// The object, made by `make` (a T* from new) at the first call; when that throws, the next call
  /// tries again. Of several threads that make it at once one wins.
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

  /// The object, or null before it was made.
  T* Find() const noexcept { return m_object; }

 private:
  void End() noexcept override { delete m_object.exchange(nullptr); }

  std::atomic<T*> m_object = nullptr;
};
