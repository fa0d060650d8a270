#pragma once

#include <vector>

#include "common/WideString.h"

/// The non-empty entries of a list that is separated by ",", without blanks around them.
std::vector<CWideString> SplitCommaList(std::wstring_view list);

/// `text` with its environment variables filled in ("%ProgramFiles%\Modules").
CWideString ExpandEnvironmentText(const CWideString& text);

/// The folder that an entry of a search path names: its full path, with environment variables
/// filled in and without a backslash at its end unless it is the root of a drive. Aliases become
/// one path: the prefix "\\?\" goes, and long names take the place of short ones ("PROGRA~1"), for
/// which the file system is asked until the folder is there, and then no more in this process.
/// Empty if the entry comes to nothing, which would stand for the current folder, or to "\\".
CWideString SearchFolderOf(const CWideString& entry);

/// The folders of a search path, in its order; entries that name none are left out.
std::vector<CWideString> ExpandSearchPath(std::wstring_view path);
