#pragma once

#include "client/terminal/Report.h"

/// `mmcat sources`: prints the module search folders of the catalog. Throws ServerFailure when the
/// server or its catalog fails.
ExitCode Sources(const OutputOptions& output);
