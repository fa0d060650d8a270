#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/terminal/ExitCode.h"

namespace CLI {
class App;
}

namespace mmcat {

/// What completes command lines in shells. The script of a shell (`mmcat completion SHELL`) calls
/// `mmcat __complete WORDS... =WORD` with the words before the one to complete, and with that one.
///
/// Returns what prints the candidates, one to a line, each followed by a tab and what it means. The
/// line ":files" or ":folders" stands for the files or folders that the shell knows.
std::function<ExitCode()> Complete(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace mmcat
