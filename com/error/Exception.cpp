#include "com/error/Exception.h"

#include "common/SystemMessage.h"

namespace qm::com {

void CopyMessage(const wchar_t* text, wchar_t* buffer, UINT maxChars) noexcept {
  if (buffer && maxChars > 0) {
    ::lstrcpynW(buffer, text, static_cast<int>(maxChars));
  }
}

BOOL MemoryException::GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT*) const {
  const common::UniqueLocalText text =
      common::FormatSystemMessage(static_cast<DWORD>(E_OUTOFMEMORY));
  CopyMessage(text ? text.Get() : L"", buffer, maxChars);
  return TRUE;
}

namespace {

MemoryException theMemoryException;

}  // namespace

void ThrowMemoryException() { throw &theMemoryException; }

}  // namespace qm::com
