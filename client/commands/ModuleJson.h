#pragma once

#include <vector>

#include "client/catalog/ModuleContents.h"
#include "client/terminal/Report.h"

/// A module as JSON, with all members even if they are empty. A number that the module leaves out
/// is null.
Json ModuleJson(const ModuleDescription& module);

/// The download files of a module as a JSON array.
Json DownloadFilesJson(const std::vector<DownloadFileDescription>& files);
