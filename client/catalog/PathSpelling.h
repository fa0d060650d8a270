#pragma once

#include <string>

#include "common/WideString.h"

namespace mmcat {

// Paths on their way between the server, which knows those of Windows, and the user. Under Wine the
// user's are those of the host system, such as "/data/modules". Texts are UTF-8.

enum class PathSpelling {
  Native,  ///< that of the host system under Wine, otherwise that of Windows
  Windows,
};

/// Sets the spelling of all paths that are read from then on. The default is Native.
void UsePathSpelling(PathSpelling spelling) noexcept;

/// Spells the full path of a file or folder for the user, without a prefix "\\?\". Anything else is
/// returned unchanged.
std::string SpellPath(const std::string& fullPath);

/// Spells the full paths in a message for the user.
std::string SpellPathsIn(const std::string& message);

/// The full path of a file or folder that the user gave, as they spell it.
std::string ResolveUserPath(const std::string& path);

/// The path that Windows functions understand for a path that the user gave, in either spelling. A
/// relative path stays relative.
qm::common::WideString ToSystemPath(const std::string& path);

}  // namespace mmcat
