#pragma once

#include <string>

/// Returns the bytes of a file. Throws std::runtime_error.
std::string ReadTextFile(const wchar_t* path);

/// Replaces a file. Throws std::runtime_error.
void WriteTextFile(const wchar_t* path, const std::string& text);
