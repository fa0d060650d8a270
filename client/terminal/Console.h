#pragma once

#include <windows.h>

#include <string>

namespace mmcat {

// Standard output and error of the client, which writes UTF-8. A pipe or file gets the bytes. A
// console gets UTF-16; bytes would be reinterpreted by its code page.
//
// A terminal is a console, or a pipe to a program that passes on what it reads to a terminal. Such
// a program (tools/wine-run) says so in the variables QM_TERMINAL, which has the word "ascii" if
// the terminal shows no other characters, and COLUMNS.

/// Returns whether a standard handle (STD_OUTPUT_HANDLE, STD_ERROR_HANDLE) is a terminal.
bool IsTerminal(DWORD standardHandle) noexcept;

/// The width in characters of the terminal behind a standard handle; 80 if it is unknown.
size_t GetTerminalWidth(DWORD standardHandle) noexcept;

/// Collects what is written to stdout from now on instead of writing it. Stdout is then not a
/// terminal.
void CollectOutput();

/// Returns what was collected, with CRLF line ends, and stops collecting.
std::string TakeOutput();

/// Returns whether the terminal of stdout shows U+2026, the ellipsis.
bool CanShowEllipsis() noexcept;

/// Writes to stdout, which may buffer the text until FlushOutput if it is a file.
void WriteOutput(const std::string& text);

/// Writes to stderr without buffering.
void WriteError(const std::string& text);

/// Flushes stdout. Returns false if anything written to it since the start was lost.
bool FlushOutput() noexcept;

/// Erases the line on the terminal of stderr, and moves to its start.
void EraseErrorLine() noexcept;

/// Makes the terminal of stdout interpret the marks of Style.h. Returns false if stdout is not a
/// terminal, if a console cannot do this, or if the environment variable NO_COLOR is not empty.
bool EnableColors() noexcept;

/// Restores the mode of the console when it is destroyed. Create one object, in main.
class ConsoleMode {
 public:
  ConsoleMode() noexcept;
  ~ConsoleMode();
  ConsoleMode(const ConsoleMode&) = delete;
  ConsoleMode& operator=(const ConsoleMode&) = delete;

 private:
  DWORD m_previous = 0;
};

}  // namespace mmcat
