#pragma once

#include <string>

#include "client/ExitCode.h"

// Answers from the index tables. Each throws ServerFailure when the server or its catalog fails.

/// `mmcat which`: prints key and display name of the module that delivers a file.
ExitCode Which(const std::string& fileName, bool json);

/// `mmcat name`: prints the display name of a module key.
ExitCode Name(const std::string& key, bool json);
