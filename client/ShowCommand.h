#pragma once

#include <string>
#include <vector>

#include "client/ExitCode.h"

/// `mmcat show`: prints each module file of `files` (UTF-8 paths) to stdout and each failure to
/// stderr, with file, HRESULT and description. Throws ServerFailure when the server cannot be used.
ExitCode Show(const std::vector<std::string>& files, bool json);
