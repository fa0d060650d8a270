#pragma once

#include <string>

#include "client/ExitCode.h"

// Each throws ServerFailure when the server or its catalog fails.

/// `mmcat list`: prints all modules of the catalog in its order.
ExitCode List(bool json);

/// `mmcat find`: prints the modules of a key, "ID" or "ID:language", and of a version, unless that
/// is empty.
ExitCode Find(const std::string& key, const std::string& version, bool json);
