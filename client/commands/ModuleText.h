#pragma once

#include <string>

#include "client/catalog/ModuleContents.h"

namespace mmcat {

/// A module as text: its key, identity and summary, then a table for each collection that is not
/// empty. Marked for colours (Style.h).
std::string FormatModule(const ModuleContents& module);

/// The names of a file as the File table has them: "SHORT.TXT|long name.txt", or one name.
std::string FormatFileName(const FileFacts& file);

}  // namespace mmcat
