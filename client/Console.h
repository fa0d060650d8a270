#pragma once

#include <windows.h>

/// Whether a standard handle (STD_OUTPUT_HANDLE, STD_ERROR_HANDLE) is a console.
bool IsConsole(DWORD standardHandle) noexcept;

/// Has stdout and stderr buffered and a console show the UTF-8 that the client writes; a pipe or
/// file gets the bytes in any case. What is written to stderr is to be flushed. Leaves the console
/// as it was. One object, in main.
class CUtf8Console {
 public:
  CUtf8Console() noexcept;
  ~CUtf8Console();
  CUtf8Console(const CUtf8Console&) = delete;
  CUtf8Console& operator=(const CUtf8Console&) = delete;

 private:
  UINT m_previousCodePage;
  DWORD m_previousMode = 0;
};

/// Has the console of stdout obey the marks of Style.h. False when stdout is none or cannot, or
/// when the environment's NO_COLOR forbids colours.
bool EnableColors() noexcept;

/// Whether everything that was printed to stdout has been written.
bool FlushOutput() noexcept;
