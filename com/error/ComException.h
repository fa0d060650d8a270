#pragma once

#include "com/error/Exception.h"
#include "com/error/com_exception.h"

namespace qm::com {

/// A com_exception that is thrown by pointer. `Tag` only makes instantiations distinct.
// The leading underscore belongs to the given name.
template <class Tag>
class _CComException : public CException {  // NOLINT(bugprone-reserved-identifier)
 public:
  explicit _CComException(const com_exception& failure) : m_failure(failure) {}

  const com_exception& Failure() const noexcept { return m_failure; }

  /// Copies the description of the failure and returns TRUE, even if nothing fits. Does not write
  /// the help context.
  BOOL GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT* = nullptr) const override {
    CopyMessage(m_failure.description.c_str(), buffer, maxChars);
    return TRUE;
  }

 private:
  com_exception m_failure;
};

/// The exception that Raise throws, by pointer. It can be caught as CComException*, as a pointer to
/// a base, or as void*. Whoever catches it calls Delete.
class CComException final : public _CComException<int> {
 public:
  using _CComException<int>::_CComException;
};

}  // namespace qm::com
