#pragma once

#include <windows.h>

#include <exception>

namespace qm {

/// A failed Win32 call, by the code that GetLastError() gave when the exception was constructed.
///
/// The system's text for the code is formatted when it is first asked for, at most once, and shared
/// by all copies, whether they were made before or after. The shared block is counted with
/// interlocked operations; the last copy frees it.
class win32_exception : public std::exception {
 public:
  win32_exception() : win32_exception(::GetLastError()) {}
  win32_exception(const win32_exception& other) noexcept;
  win32_exception& operator=(const win32_exception& other) noexcept;
  ~win32_exception() override;

  DWORD code() const noexcept;

  /// HRESULT_FROM_WIN32 of the code.
  HRESULT hresult() const noexcept;

  /// The system's text; empty for code 0 and when the system has none. Lives as long as any copy.
  const wchar_t* message() const noexcept;

  /// message() in the system's code page, as std::exception demands.
  const char* what() const noexcept override;

 private:
  /// Takes the code as an argument: making the shared block may change the thread's.
  explicit win32_exception(DWORD code);

  struct Shared;
  Shared* m_shared;
};

/// The HRESULT of a Win32 or installer code: a code that is 0 or negative stands as it is, any
/// other is placed into facility Win32.
constexpr HRESULT HResultFromCode(DWORD code) noexcept {
  const auto value = static_cast<HRESULT>(code);
  return value <= 0 ? value : static_cast<HRESULT>((code & 0xFFFFU) | 0x80070000U);
}

}  // namespace qm
