#pragma once

#include <string>

#include "client/terminal/Report.h"

// Each throws ServerFailure when the server or its catalog fails.

/// `mmcat list`: prints all modules of the catalog in its order.
ExitCode List(const OutputOptions& output);

/// `mmcat find`: prints the modules of a key, "ID" or "ID:language", and of a version, unless that
/// is empty; when there are none, remarks those that come nearest.
ExitCode Find(const std::string& key, const std::string& version, const OutputOptions& output);
