#pragma once

#include <string>

#include "client/Report.h"

/// `mmcat name`: prints the display name that the index has for a module key, the key itself for
/// another one that the catalog knows. Throws ServerFailure when the server or its catalog fails.
ExitCode Name(const std::string& key, const OutputOptions& output);
