#pragma once

#include <string>
#include <vector>

#include "client/terminal/Report.h"

/// `mmcat check`: what is wrong in the catalog, or in the set that results from merging the modules
/// of some keys ("ID" or "ID:language"), unless there are none. The answer is kFindings when there
/// is something, kSomeUnreadable when a module cannot be read. Throws ServerFailure when the server
/// or its catalog fails.
ExitCode CheckCatalog(const std::vector<std::string>& keys, const OutputOptions& output);
