#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace mmcat {

// Whole text files, by the path that the user gave. Both throw std::runtime_error with the system's
// reason if the file cannot be read or written.

/// Reads a file, or stdin for "-". Refuses one with more than `largest` bytes.
std::string ReadTextFile(const std::string& path, size_t largest = SIZE_MAX);

/// Writes a file in place of an existing one, which stays as it is if this fails.
void WriteTextFile(const std::string& path, const std::string& text);

}  // namespace mmcat
