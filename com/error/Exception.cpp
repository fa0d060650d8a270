#include "com/error/Exception.h"

#include "common/SystemMessage.h"

void CopyMessage(const wchar_t* text, wchar_t* buffer, UINT maxChars) noexcept {
  if (buffer && maxChars > 0) {
    ::lstrcpynW(buffer, text, static_cast<int>(maxChars));
  }
}

BOOL CMemoryException::GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT*) const {
  const CUniqueLocalText text = FormatSystemText(static_cast<DWORD>(E_OUTOFMEMORY));
  CopyMessage(text ? text.Get() : L"", buffer, maxChars);
  return TRUE;
}

namespace {

CMemoryException theMemoryException;

}  // namespace

void ThrowMemoryException() { throw &theMemoryException; }
