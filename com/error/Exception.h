#pragma once

#include <windows.h>

namespace qm::com {

/// Root of the framework's objects.
class CObject {
 public:
  virtual ~CObject() = default;
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;

 protected:
  CObject() noexcept = default;
};

/// Root of the framework's exceptions. They are thrown by pointer, and whoever catches one calls
/// Delete.
class CException : public CObject {
 public:
  /// Copies the message into `buffer`, truncated to `maxChars` characters with the terminator, and
  /// returns TRUE. Copies nothing if there is no room for the terminator. An exception without a
  /// message may return FALSE. `helpContext` may be null; only exceptions that have a help context
  /// write it.
  virtual BOOL GetErrorMessage(wchar_t* buffer, UINT maxChars,
                               UINT* helpContext = nullptr) const = 0;

  /// Deletes an exception that was created with new; leaves others alone.
  void Delete() noexcept {
    if (m_storage == Storage::Heap) {
      delete this;
    }
  }

 protected:
  CException() noexcept = default;
  enum class Storage { Heap, Static };
  explicit CException(Storage storage) noexcept : m_storage(storage) {}

 private:
  Storage m_storage = Storage::Heap;
};

/// Out of memory. Every throw uses the same static object, so that throwing allocates nothing.
class MemoryException final : public CException {
 public:
  MemoryException() noexcept : CException(Storage::Static) {}
  BOOL GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT* helpContext = nullptr) const override;
};

/// Throws a pointer to the static MemoryException of this DLL.
[[noreturn]] void ThrowMemoryException();

/// Copies as much of `text` into `buffer` as fits into `maxChars` characters, terminator included.
/// Copies nothing if `buffer` is null or `maxChars` is 0.
void CopyMessage(const wchar_t* text, wchar_t* buffer, UINT maxChars) noexcept;

}  // namespace qm::com
