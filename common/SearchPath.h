#pragma once

#include <vector>

#include "common/WideString.h"

namespace qm::common {

/// Splits a comma-separated list. Trims spaces and tabs, and drops empty entries.
std::vector<WideString> SplitCommaList(std::wstring_view list);

/// Expands the environment variables in `text` ("%ProgramFiles%\Modules"). Returns `text` unchanged
/// if the system cannot expand it.
WideString ExpandEnvironmentVariables(const WideString& text);

/// Returns the folder that an entry of a search path names, as a full path with environment
/// variables expanded. Only the root of a drive keeps a backslash at its end. Empty if the entry
/// expands to nothing, which would mean the current folder, or to "\\".
///
/// Aliases of a folder become one path: the prefix "\\?\" is removed, and long names replace short
/// ones ("PROGRA~1"). Long names are cached once the folder exists; until then, each call queries
/// the file system.
WideString ResolveSearchFolder(const WideString& entry);

/// Returns the folders of a search path, in its order. Entries that name no folder are left out.
std::vector<WideString> ExpandSearchPath(std::wstring_view path);

}  // namespace qm::common
