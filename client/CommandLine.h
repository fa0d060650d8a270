#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "client/terminal/ExitCode.h"

/// What to run; or the exit code of a command line that is wrong or asks for help, about which
/// everything has been printed.
using Command = std::variant<std::function<ExitCode()>, ExitCode>;

/// Reads the arguments (UTF-8) behind the program's name.
Command ReadCommandLine(std::vector<std::string> arguments);
