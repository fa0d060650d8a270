#pragma once

#include <windows.h>

/// Root of the framework's objects.
class CObject {
 public:
  virtual ~CObject() = default;
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;

 protected:
  CObject() noexcept = default;
};

/// Root of the framework's exceptions, which are thrown by pointer; whoever catches one calls
/// Delete.
class CException : public CObject {
 public:
  /// Copies the message into `buffer`, cut to `maxChars` characters with the terminator, and
  /// returns TRUE; an exception without a message may return FALSE. Without room for the terminator
  /// nothing is copied. `helpContext` may be null and is written only by exceptions that have one.
  virtual BOOL GetErrorMessage(wchar_t* buffer, UINT maxChars,
                               UINT* helpContext = nullptr) const = 0;

  /// Frees an exception that was made with new; leaves others alone.
  void Delete() noexcept {
    if (m_autoDelete) {
      delete this;
    }
  }

 protected:
  CException() noexcept = default;
  explicit CException(bool autoDelete) noexcept : m_autoDelete(autoDelete) {}

 private:
  bool m_autoDelete = true;
};

/// Out of memory. One object serves every throw, so that throwing needs no memory.
class CMemoryException final : public CException {
 public:
  CMemoryException() noexcept : CException(false) {}
  BOOL GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT* helpContext = nullptr) const override;
};

/// Throws the process's one CMemoryException*.
[[noreturn]] void ThrowMemoryException();

/// Copies as much of `text` as fits into `buffer` of `maxChars` characters, terminator included;
/// nothing if there is no room even for that.
void CopyMessage(const wchar_t* text, wchar_t* buffer, UINT maxChars) noexcept;
