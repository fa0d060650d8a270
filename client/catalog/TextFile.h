#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace mmcat {

// Whole text files, by the path that the user gave. All throw std::runtime_error with the system's
// reason if the file cannot be read or written.

/// Reads a file, or stdin for "-". Refuses one with more than `largest` bytes.
std::string ReadTextFile(const std::string& path, size_t largest = SIZE_MAX);

/// Replaces a file, or makes a new one. If this fails, an existing file stays as it is, or else the
/// exception says where the new text is. The new file gets the permissions of the old one, except
/// under Wine. A device gets the text as it is. If no new file can be created beside an existing
/// one, that one is overwritten in place.
void WriteTextFile(const std::string& path, const std::string& text);

/// The path of the file that WriteTextFile would write, as Windows spells it: what a link leads to.
std::string ResolveTarget(const std::string& path);

/// Throws if it is clear in advance that WriteTextFile would fail. Changes nothing.
void RequireWritable(const std::string& path);

}  // namespace mmcat
