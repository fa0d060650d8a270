#pragma once

#include <string>

#include "client/terminal/Report.h"

/// `mmcat name`: prints the display name that the index has for a module key, or for a module that
/// the index does not have, the name that the module itself gives. Throws ServerFailure when the
/// server or its catalog fails.
ExitCode Name(const std::string& key, const OutputOptions& output);
