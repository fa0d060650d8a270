#pragma once

#include <string>

#include "client/catalog/ModuleContents.h"

namespace mmcat {

/// The main facts of a module as text that fits one screen: its key, its identity, and an entry for
/// each kind of content, with as many names as the page has room for (Page.h). Marked for colours
/// (Style.h).
std::string FormatModuleSummary(const ModuleContents& module);

/// The whole module as text: identity and summary, then a table for each collection that is not
/// empty.
std::string FormatModule(const ModuleContents& module);

/// The names of a file as the File table has them: "SHORT.TXT|long name.txt", or one name.
std::string FormatFileName(const FileFacts& file);

}  // namespace mmcat
