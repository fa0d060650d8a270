#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleContents.h"
#include "client/terminal/Report.h"

namespace mmcat {

/// A module as JSON, with all members even if they are empty. A number that the module leaves out
/// is null.
Json MakeModuleJson(const ModuleContents& module);

/// The language identifiers of a file, which are separated by commas, as a JSON array of numbers.
/// Anything else in the text is left out.
Json MakeLanguagesJson(const std::string& languages);

/// The download files of a module as a JSON array.
Json MakeDownloadFilesJson(const std::vector<DownloadFileContents>& files);

}  // namespace mmcat
