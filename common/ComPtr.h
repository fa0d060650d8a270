#pragma once

#include <windows.h>

#include <utility>

/// Owns one reference to a COM object.
template <class T>
class CComPtr {
 public:
  CComPtr() noexcept = default;
  CComPtr(T* object) noexcept : m_object(object) {
    if (m_object) {
      m_object->AddRef();
    }
  }
  CComPtr(const CComPtr& other) noexcept : CComPtr(other.m_object) {}
  CComPtr(CComPtr&& other) noexcept : m_object(other.Detach()) {}
  CComPtr& operator=(const CComPtr& other) noexcept {
    CComPtr copy(other);
    std::swap(m_object, copy.m_object);
    return *this;
  }
  CComPtr& operator=(CComPtr&& other) noexcept {
    CComPtr taken(std::move(other));
    std::swap(m_object, taken.m_object);
    return *this;
  }
  ~CComPtr() { Release(); }

  /// Takes ownership of a reference that the caller holds.
  static CComPtr Adopt(T* object) noexcept {
    CComPtr holder;
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
