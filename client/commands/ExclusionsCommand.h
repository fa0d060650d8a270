#pragma once

#include "client/terminal/Report.h"

/// `mmcat exclusions`: prints what every module excludes, with the modules of the catalog that this
/// hits. Throws ServerFailure when the server or its catalog fails.
ExitCode Exclusions(const OutputOptions& output);
