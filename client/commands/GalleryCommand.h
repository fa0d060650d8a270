#pragma once

#include "client/terminal/Report.h"

/// `mmcat gallery`: prints every description of the object gallery, with what the catalog makes of
/// it and its download files. Throws ServerFailure when the server, its catalog or a component
/// fails.
ExitCode Gallery(const OutputOptions& output);
