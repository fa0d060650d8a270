#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleSet.h"

namespace mmcat {

/// Where the copies of a file go, as a cell of a table: each folder once, but not thousands of
/// them. On a page (Page.h), several folders are only counted, because shortened they would look
/// like one.
std::string FormatTargetFolders(const std::vector<const FileFacts*>& copies);

}  // namespace mmcat
