#pragma once

#include <string>

namespace mmcat {

// Paths as the user spells them, in UTF-8.

/// What tables show for a module of the gallery whose file is not on this machine.
inline constexpr char kNoFile[] = "(no file)";

/// Returns whether a file exists.
bool IsFile(const std::string& path);

/// Returns whether a folder exists.
bool IsFolder(const std::string& path);

/// The last part of a path.
std::string GetFileName(const std::string& path);

/// The folder of a path, as an argument for --folder: "." for a name alone.
std::string GetFolder(const std::string& path);

/// Returns why the file name in an option is wrong; empty if it is not. Only an empty name is
/// wrong: it is probably an unset shell variable.
std::string ValidateFileName(const std::string& file);

}  // namespace mmcat
