#pragma once

#include <string>

#include "client/terminal/Report.h"

/// `mmcat which`: prints the modules that deliver a file, or files of a pattern with `*` and `?`.
/// A file is asked for in the index tables, and, when they have nothing, in the File tables of the
/// modules; a pattern in both. Throws ServerFailure when the server or its catalog fails.
ExitCode Which(const std::string& file, const OutputOptions& output);
