#pragma once

#include <string>

#include "client/catalog/ModuleContents.h"

namespace mmcat {

/// The main facts of a module as text, which fit one screen: its key, identity, and a line for
/// each kind of content, with the names of a page's width (Page.h). Marked for colours (Style.h).
std::string FormatModuleSummary(const ModuleContents& module);

/// All of it: identity and summary, then a table for each collection that is not empty.
std::string FormatModule(const ModuleContents& module);

/// The names of a file as the File table has them: "SHORT.TXT|long name.txt", or one name.
std::string FormatFileName(const FileFacts& file);

}  // namespace mmcat
