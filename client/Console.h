#pragma once

#include <windows.h>

/// Has stdout buffered and a console show the UTF-8 that the client writes; a pipe or file gets the
/// bytes in any case. One object, in main.
class CUtf8Console {
 public:
  CUtf8Console() noexcept;
  ~CUtf8Console();
  CUtf8Console(const CUtf8Console&) = delete;
  CUtf8Console& operator=(const CUtf8Console&) = delete;

 private:
  UINT m_previousCodePage;
};

/// Whether everything that was printed to stdout has been written.
bool FlushOutput() noexcept;
