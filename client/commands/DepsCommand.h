#pragma once

#include <string>

#include "client/terminal/Report.h"

/// How `mmcat deps` shows what a module needs.
enum class DepsView {
  Order,    ///< everything that has to be merged, in the order of merging
  Tree,     ///< each module above what it needs
  Reverse,  ///< the modules that need this one instead
};

/// `mmcat deps`: what the modules of a key, "ID" or "ID:language", need. The answer is kFindings
/// when something is missing, or when modules need one another. Throws ServerFailure when the
/// server or its catalog fails.
ExitCode Deps(const std::string& key, DepsView view, const OutputOptions& output);
