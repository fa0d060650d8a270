#pragma once

#include <vector>

#include "client/catalog/ModuleDescription.h"
#include "client/terminal/Report.h"

/// A module for machines: every value, empty ones too; null for a number that the module leaves
/// out.
Json ModuleJson(const ModuleDescription& module);

/// The download files of a module, likewise.
Json DownloadFilesJson(const std::vector<DownloadFileDescription>& files);
