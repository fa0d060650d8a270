#pragma once

#include <windows.h>

#include <memory>

#include "common/WideString.h"

namespace msidb {

/// Reads text from an installer function that fills a buffer. `read(buffer, &length)` makes the
/// call, with the buffer's size in characters in `length`. When the buffer of InlineSize characters
/// on the stack is too small (ERROR_MORE_DATA), the call is made once more with a heap buffer of
/// `grownSize(length)` characters. Returns the last call's code; `text` is set on success only.
template <DWORD InlineSize, class Read, class GrownSize>
UINT ReadText(CWideString& text, Read read, GrownSize grownSize) {
  wchar_t inlineBuffer[InlineSize];
  inlineBuffer[0] = L'\0';
  DWORD length = InlineSize;
  UINT code = read(inlineBuffer, &length);
  if (code == ERROR_SUCCESS) {
    text = CWideString(inlineBuffer);
  } else if (code == ERROR_MORE_DATA) {
    length = grownSize(length);
    const auto heapBuffer = std::make_unique<wchar_t[]>(length);
    code = read(heapBuffer.get(), &length);
    if (code == ERROR_SUCCESS) {
      text = CWideString(heapBuffer.get());
    }
  }
  return code;
}

}  // namespace msidb
