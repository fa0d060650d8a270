#pragma once

#include <string>

namespace mmcat {

// Whole text files, by the path that the user gave. Both throw std::runtime_error with the system's
// reason if the file cannot be read or written.

/// Reads a file, or stdin for "-".
std::string ReadTextFile(const std::string& path);

/// Writes a file in place of an existing one, which stays as it is if this fails.
void WriteTextFile(const std::string& path, const std::string& text);

}  // namespace mmcat
