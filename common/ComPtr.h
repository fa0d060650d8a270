#pragma once

#include <windows.h>

#include <utility>

namespace qm::common {

/// Owns one reference to a COM object.
template <class T>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  ComPtr(T* object) noexcept : m_object(object) {
    if (m_object) {
      m_object->AddRef();
    }
  }
  ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_object) {}
  ComPtr(ComPtr&& other) noexcept : m_object(other.Detach()) {}
  ComPtr& operator=(const ComPtr& other) noexcept {
    ComPtr copy(other);
    std::swap(m_object, copy.m_object);
    return *this;
  }
  ComPtr& operator=(ComPtr&& other) noexcept {
    ComPtr taken(std::move(other));
    std::swap(m_object, taken.m_object);
    return *this;
  }
  ~ComPtr() { Release(); }

  /// Takes ownership of a reference that the caller holds.
  static ComPtr Adopt(T* object) noexcept {
    ComPtr holder;
    holder.m_object = object;
    return holder;
  }

  T* Get() const noexcept { return m_object; }
  T* operator->() const noexcept { return m_object; }
  T& operator*() const noexcept { return *m_object; }
  explicit operator bool() const noexcept { return m_object != nullptr; }

  /// Hands the reference over to the caller.
  T* Detach() noexcept { return std::exchange(m_object, nullptr); }

  void Release() noexcept {
    if (T* const object = Detach()) {
      object->Release();
    }
  }

  /// Releases the held object and returns the address for an out parameter.
  T** Put() noexcept {
    Release();
    return &m_object;
  }

  template <class Other>
  HRESULT QueryInterface(Other** other) const noexcept {
    return m_object->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other));
  }

 private:
  T* m_object = nullptr;
};

}  // namespace qm::common
