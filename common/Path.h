#pragma once

#include "common/WideString.h"

namespace qm::common {

/// Joins `base` and `tail` with exactly one backslash between them. If `base` is empty, returns
/// `tail` unchanged.
WideString JoinPath(const WideString& base, std::wstring_view tail);

/// Returns the folder of a file or folder: everything before the last backslash. The root of a
/// drive keeps its backslash. Empty if there is no backslash.
WideString ParentFolder(std::wstring_view path);

/// Returns the full path of a file or folder. A relative path is resolved against the current
/// folder. Returns `path` unchanged if the system cannot resolve it.
WideString ResolveFullPath(const WideString& path);

/// Returns a full path in a form that the system accepts at any length: unchanged if it is shorter
/// than MAX_PATH with room for an 8.3 file name, otherwise prefixed with "\\?\".
WideString ToExtendedPath(const WideString& path);

/// Compares paths or file names as the file system does, ignoring case. Returns a value less than,
/// equal to or greater than 0.
int CompareFileNames(std::wstring_view a, std::wstring_view b) noexcept;

/// Returns whether a file or folder exists at `path`, which may be of any length.
bool PathExists(const WideString& path);

}  // namespace qm::common
