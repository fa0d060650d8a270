#pragma once

#include "com/error/Exception.h"
#include "com/error/com_exception.h"

/// The heap object in which a com_exception travels; the parameter only tells instances apart.
// The leading underscore is part of the name under which this role is known.
template <class Tag>
class _CComException : public CException {  // NOLINT(bugprone-reserved-identifier)
 public:
  explicit _CComException(const com_exception& failure) : m_failure(failure) {}

  const com_exception& Failure() const noexcept { return m_failure; }

  /// Copies the description of the failure and returns TRUE, also if nothing fits; the help context
  /// is not written.
  BOOL GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT* = nullptr) const override {
    CopyMessage(m_failure.description.c_str(), buffer, maxChars);
    return TRUE;
  }

 private:
  com_exception m_failure;
};

/// What the raiser throws, by pointer: catch CComException*, one of its bases or void*, and Delete
/// it.
class CComException final : public _CComException<int> {
 public:
  using _CComException<int>::_CComException;
};
