#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleSet.h"

namespace mmcat {

/// The folders to which the copies of a file go, as a cell of a table: each folder once, and only
/// the first of many. On a page (Page.h), several folders are only counted, because they would look
/// like one if shortened.
std::string FormatTargetFolders(const std::vector<const FileFacts*>& copies);

}  // namespace mmcat
