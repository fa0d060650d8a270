#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "client/terminal/ExitCode.h"

namespace mmcat {

/// What a command line asks for: something to run, or only an exit code if the command line is
/// wrong or asks for help or the version. Help and errors have been printed by then.
using CommandLine = std::variant<std::function<ExitCode()>, ExitCode>;

/// Reads the arguments (UTF-8) after the program's name.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace mmcat
