#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/terminal/ExitCode.h"

namespace CLI {
class App;
}

namespace mmcat {

/// Completes command lines for shells. The script of a shell (`mmcat completion SHELL`) calls
/// `mmcat __complete WORDS... =WORD` with the words before the one to complete, and with that one.
///
/// Returns a function that prints the candidates, one per line, each followed by a tab and its
/// meaning. The line ":files" or ":folders" makes the shell add files or folders.
std::function<ExitCode()> Complete(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace mmcat
