#include "com/error/Exception.h"

#include "common/SystemText.h"

BOOL CopyMessage(const wchar_t* text, wchar_t* buffer, UINT maxChars) noexcept {
  if (!buffer || maxChars == 0) {
    return FALSE;
  }
  ::lstrcpynW(buffer, text, static_cast<int>(maxChars));
  return TRUE;
}

BOOL CMemoryException::GetErrorMessage(wchar_t* buffer, UINT maxChars, UINT*) const {
  const CUniqueLocalText text = FormatSystemText(static_cast<DWORD>(E_OUTOFMEMORY));
  return CopyMessage(text ? text.Get() : L"", buffer, maxChars);
}

namespace {

CMemoryException theMemoryException;

}  // namespace

void ThrowMemoryException() { throw &theMemoryException; }
