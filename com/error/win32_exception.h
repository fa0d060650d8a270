#pragma once

#include <windows.h>

#include <exception>

namespace qm {

/// A failed Win32 call, with the GetLastError() code at the time of construction.
///
/// The system's message is formatted at first use, at most once, and shared by all copies, whenever
/// they were made. Copies share a block with an interlocked reference count; the last one frees it.
class win32_exception : public std::exception {
 public:
  win32_exception() : win32_exception(::GetLastError()) {}
  win32_exception(const win32_exception& other) noexcept;
  win32_exception& operator=(const win32_exception& other) noexcept;
  ~win32_exception() override;

  DWORD code() const noexcept;

  /// HRESULT_FROM_WIN32 of the code.
  HRESULT hresult() const noexcept;

  /// The system's message. Empty for code 0 or if the system has none. Valid as long as any copy
  /// lives.
  const wchar_t* message() const noexcept;

  /// message() in the system's code page.
  const char* what() const noexcept override;

 private:
  /// Takes the code as an argument, because allocating the shared block may change the thread's
  /// last error.
  explicit win32_exception(DWORD code);

  struct Shared;
  Shared* m_shared;
};

/// Returns the HRESULT of a Win32 or installer code: 0 and negative codes unchanged, any other in
/// FACILITY_WIN32.
constexpr HRESULT HResultFromCode(DWORD code) noexcept {
  const auto value = static_cast<HRESULT>(code);
  return value <= 0 ? value : static_cast<HRESULT>((code & 0xFFFFU) | 0x80070000U);
}

}  // namespace qm
