#pragma once

#include <windows.h>

#include <memory>

#include "common/WideString.h"

namespace qm::msidb {

/// Reads text from an installer function that fills a buffer. `read(buffer, &length)` makes the
/// call; `length` is the buffer's size in characters. If the stack buffer of InlineSize characters
/// is too small (ERROR_MORE_DATA), a second call gets a heap buffer of `grownSize(length)`
/// characters. Returns the code of the last call; `text` is set only on success.
template <DWORD InlineSize, class Read, class GrownSize>
UINT ReadInstallerText(common::WideString& text, Read read, GrownSize grownSize) {
  wchar_t inlineBuffer[InlineSize];
  inlineBuffer[0] = L'\0';
  DWORD length = InlineSize;
  UINT code = read(inlineBuffer, &length);
  if (code == ERROR_SUCCESS) {
    text = common::WideString(inlineBuffer);
  } else if (code == ERROR_MORE_DATA) {
    length = grownSize(length);
    const auto heapBuffer = std::make_unique<wchar_t[]>(length);
    code = read(heapBuffer.get(), &length);
    if (code == ERROR_SUCCESS) {
      text = common::WideString(heapBuffer.get());
    }
  }
  return code;
}

}  // namespace qm::msidb
