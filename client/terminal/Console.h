#pragma once

#include <windows.h>

#include <string>

// Where the client writes UTF-8 to. A pipe or file gets the bytes; a console gets characters, whose
// way would otherwise lead through its code page and through what the C library makes of it.

/// Whether a standard handle (STD_OUTPUT_HANDLE, STD_ERROR_HANDLE) is a console.
bool IsConsole(DWORD standardHandle) noexcept;

/// Writes to stdout, which may keep it until FlushOutput.
void WriteOutput(const std::string& text);

/// Writes to stderr at once.
void WriteError(const std::string& text);

/// Whether everything that was written to stdout has got there.
bool FlushOutput() noexcept;

/// Has the console of stdout obey the marks of Style.h. False when stdout is none or cannot, or
/// when the environment's NO_COLOR forbids colours.
bool EnableColors() noexcept;

/// Leaves the console as it was. One object, in main.
class CConsoleMode {
 public:
  CConsoleMode() noexcept;
  ~CConsoleMode();
  CConsoleMode(const CConsoleMode&) = delete;
  CConsoleMode& operator=(const CConsoleMode&) = delete;

 private:
  DWORD m_previous = 0;
};
