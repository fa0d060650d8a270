#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

/// A call of the server that failed: its HRESULT and, in what(), the description that it left
/// (UTF-8, on one line), else the system's text.
class ServerFailure : public std::runtime_error {
 public:
  ServerFailure(HRESULT hr, const std::string& description)
      : std::runtime_error(description), m_hr(hr) {}

  /// The failure of the call that just answered `hr`, with the thread's error object.
  static ServerFailure Capture(HRESULT hr);

  HRESULT Result() const noexcept { return m_hr; }

 private:
  HRESULT m_hr;
};

/// Throws ServerFailure when the call that answered `hr` failed.
inline void Check(HRESULT hr) {
  if (FAILED(hr)) {
    throw ServerFailure::Capture(hr);
  }
}

/// UTF-8 text with a blank for every line break.
std::string OnOneLine(const std::string& text);
