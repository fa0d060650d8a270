#pragma once

#include <string>

#include "client/terminal/Report.h"

/// `mmcat files`: prints the files of every module whose names are those of a pattern with `*` and
/// `?`, all when it is empty. Throws ServerFailure when the server or its catalog fails.
ExitCode Files(const std::string& pattern, const OutputOptions& output);
