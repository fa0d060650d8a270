#pragma once

#include <string>
#include <vector>

#include "client/terminal/Report.h"

/// `mmcat show`: prints modules to stdout and each failure to stderr, with file, HRESULT and
/// description. An argument (UTF-8) is a module file, the files that a path with wildcards stands
/// for, or the key ("ID" or "ID:language") of modules of the catalog. Throws ServerFailure when the
/// server or its catalog fails.
ExitCode Show(const std::vector<std::string>& arguments, const OutputOptions& output);
