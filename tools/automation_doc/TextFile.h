#pragma once

#include <string>

namespace qm::docs {

/// Returns the bytes of a file. Throws std::runtime_error.
std::string ReadTextFile(const wchar_t* path);

/// Replaces a file. Throws std::runtime_error.
void WriteTextFile(const wchar_t* path, const std::string& text);

}  // namespace qm::docs
