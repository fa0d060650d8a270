#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

namespace mmcat {

/// A failed call of the server: its HRESULT and, in what(), the description from its error object
/// or else the system's text for the HRESULT, as UTF-8 on one line. Paths in it are spelled for the
/// user.
class ServerFailure : public std::runtime_error {
 public:
  ServerFailure(HRESULT hr, const std::string& description)
      : std::runtime_error(description), m_hr(hr) {}

  /// Makes a failure of the call that just returned `hr`. Takes the thread's error object.
  static ServerFailure Capture(HRESULT hr);

  HRESULT HResult() const noexcept { return m_hr; }

 private:
  HRESULT m_hr;
};

/// The failure to create an object: the server or a sibling component is not where the program
/// looks for it, or does not work.
class ServerUnavailable : public ServerFailure {
 public:
  using ServerFailure::ServerFailure;

  /// What to do about it, in sentences.
  static std::string DescribeRemedy();
};

/// Throws ServerFailure if the call that just returned `hr` failed.
inline void ThrowIfFailed(HRESULT hr) {
  if (FAILED(hr)) {
    throw ServerFailure::Capture(hr);
  }
}

/// UTF-8 text with each run of line breaks replaced by a blank.
std::string ToOneLine(const std::string& text);

}  // namespace mmcat
