#include "client/terminal/Console.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <iterator>
#include <optional>
#include <string_view>

#include "text/Utf.h"

namespace mmcat {

namespace {

bool g_consoleFailed = false;
std::optional<std::string> g_collected;  // what was written to stdout, while it is collected

bool IsConsole(DWORD standardHandle) noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(standardHandle), &mode) != 0;
}

/// Returns whether QM_TERMINAL has a word.
bool IsInTerminalVariable(const wchar_t* word) noexcept {
  wchar_t words[32];
  const DWORD size = ::GetEnvironmentVariableW(L"QM_TERMINAL", words, 32);
  return size > 0 && size < 32 && std::wcsstr(words, word);
}

/// Returns whether a pipe leads to a terminal.
bool IsRelayed(DWORD standardHandle) noexcept {
  return IsInTerminalVariable(standardHandle == STD_OUTPUT_HANDLE ? L"stdout" : L"stderr") &&
         ::GetFileType(::GetStdHandle(standardHandle)) == FILE_TYPE_PIPE;
}

HANDLE GetOutputHandle() noexcept { return ::GetStdHandle(STD_OUTPUT_HANDLE); }

bool AreColorsForbidden() noexcept {
  wchar_t value[2];
  return ::GetEnvironmentVariableW(L"NO_COLOR", value, 2) != 0;
}

/// How much of a text to write to a console at once: a limited amount that ends between characters.
size_t MeasurePiece(std::wstring_view text) noexcept {
  constexpr size_t kMost = 8192;  // older consoles accept little more
  const size_t size = std::min(text.size(), kMost);
  return size < text.size() && IS_HIGH_SURROGATE(text[size - 1]) ? size - 1 : size;
}

void WriteToConsole(DWORD standardHandle, const std::string& text) {
  const std::wstring wide = qm::text::ToWide(text);
  std::wstring_view rest(wide);
  while (!rest.empty()) {
    const size_t size = MeasurePiece(rest);
    DWORD written = 0;
    if (!::WriteConsoleW(::GetStdHandle(standardHandle), rest.data(), static_cast<DWORD>(size),
                         &written, nullptr) ||
        written == 0) {
      g_consoleFailed = true;
      return;
    }
    rest.remove_prefix(std::min<size_t>(written, size));
  }
}

void WriteTo(DWORD standardHandle, FILE* stream, const std::string& text) {
  if (IsConsole(standardHandle)) {
    WriteToConsole(standardHandle, text);
  } else {
    std::fwrite(text.data(), 1, text.size(), stream);
    if (::GetFileType(::GetStdHandle(standardHandle)) != FILE_TYPE_DISK) {
      std::fflush(stream);  // a reader may be waiting for it
    }
  }
}

}  // namespace

bool IsTerminal(DWORD standardHandle) noexcept {
  const bool isCollected = g_collected && standardHandle == STD_OUTPUT_HANDLE;
  return !isCollected && (IsConsole(standardHandle) || IsRelayed(standardHandle));
}

size_t GetTerminalWidth(DWORD standardHandle) noexcept {
  constexpr size_t kUnknown = 80;
  CONSOLE_SCREEN_BUFFER_INFO console;
  if (::GetConsoleScreenBufferInfo(::GetStdHandle(standardHandle), &console)) {
    return static_cast<size_t>(console.dwSize.X);
  }
  wchar_t columns[16];
  const DWORD size = ::GetEnvironmentVariableW(L"COLUMNS", columns, 16);
  const long width = size > 0 && size < 16 ? std::wcstol(columns, nullptr, 10) : 0;
  return width > 0 ? static_cast<size_t>(width) : kUnknown;
}

void CollectOutput() { g_collected.emplace(); }

std::string TakeOutput() {
  std::string text;
  for (const char c : *g_collected) {
    if (c == '\n') {
      text += '\r';
    }
    text += c;
  }
  g_collected.reset();
  return text;
}

bool CanShowEllipsis() noexcept {
  if (!IsConsole(STD_OUTPUT_HANDLE)) {
    return !IsInTerminalVariable(L"ascii");
  }
  // UTF-8 has every character, and a conversion to it reports no replacement.
  BOOL isReplaced = FALSE;
  const UINT codePage = ::GetConsoleOutputCP();
  return codePage == CP_UTF8 || (::WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, L"\u2026", 1,
                                                       nullptr, 0, nullptr, &isReplaced) > 0 &&
                                 !isReplaced);
}

void WriteOutput(const std::string& text) {
  if (g_collected) {
    *g_collected += text;
  } else {
    WriteTo(STD_OUTPUT_HANDLE, stdout, text);
  }
}

void WriteError(const std::string& text) {
  WriteTo(STD_ERROR_HANDLE, stderr, text);
  std::fflush(stderr);
}

bool FlushOutput() noexcept {
  return std::fflush(stdout) == 0 && !std::ferror(stdout) && !g_consoleFailed;
}

void EraseErrorLine() noexcept {
  if (!IsConsole(STD_ERROR_HANDLE)) {
    constexpr char kErase[] = "\r\x1b[K";
    std::fwrite(kErase, 1, sizeof kErase - 1, stderr);
    std::fflush(stderr);
    return;
  }
  // Older consoles know no control sequences. The last column stays free: writing to it would begin
  // another line.
  wchar_t blank[256];
  const size_t width = std::min(GetTerminalWidth(STD_ERROR_HANDLE) - 1, std::size(blank) - 2);
  std::fill_n(blank, width + 2, L' ');
  blank[0] = blank[width + 1] = L'\r';
  DWORD written = 0;
  ::WriteConsoleW(::GetStdHandle(STD_ERROR_HANDLE), blank, static_cast<DWORD>(width + 2), &written,
                  nullptr);
}

bool EnableColors() noexcept {
  if (AreColorsForbidden() || !IsTerminal(STD_OUTPUT_HANDLE)) {
    return false;
  }
  DWORD mode = 0;
  return !::GetConsoleMode(GetOutputHandle(), &mode) ||
         ::SetConsoleMode(GetOutputHandle(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

ConsoleMode::ConsoleMode() noexcept {
  // The C library takes the null device for a console and would write to it byte by byte.
  constexpr size_t kBufferSize = 65536;
  std::setvbuf(stdout, nullptr, _IOFBF, kBufferSize);
  std::setvbuf(stderr, nullptr, _IOFBF, kBufferSize);
  ::GetConsoleMode(GetOutputHandle(), &m_previous);
}

ConsoleMode::~ConsoleMode() {
  if (m_previous) {
    ::SetConsoleMode(GetOutputHandle(), m_previous);
  }
}

}  // namespace mmcat
