#pragma once

#include "common/WideString.h"

/// base and tail with exactly one backslash between them; a tail that begins with a backslash is
/// not doubled, and an empty base gives the tail as it is.
CWideString JoinPath(const CWideString& base, std::wstring_view tail);

/// The folder of a file or folder: everything before the last backslash, which only the root of a
/// drive keeps; empty when there is no backslash.
CWideString FolderOf(std::wstring_view path);

/// The full path of a file or folder, from the current folder when it is relative; the path itself
/// when the system cannot tell.
CWideString FullPath(const CWideString& path);

/// A full path in the form in which the system takes paths of any length: unchanged if it is
/// shorter than MAX_PATH with room for the name of a file, otherwise behind "\\?\".
CWideString LongPath(const CWideString& path);

/// Orders paths, or names of files, as the system compares file names, without regard to case: less
/// than, equal to or greater than 0.
int CompareFileNames(std::wstring_view a, std::wstring_view b) noexcept;

/// Whether there is a file or folder of this path, of any length.
bool PathExists(const CWideString& path);
