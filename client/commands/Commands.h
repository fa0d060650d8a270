#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "client/terminal/Report.h"

namespace CLI {
class App;
}

namespace mmcat {

/// Runs a command with the arguments that were parsed for it, and returns the exit code. Throws
/// ServerFailure if the server, its catalog or a sibling component fails.
using CommandRun = std::function<ExitCode(const OutputOptions&)>;

/// How a command uses a settings file.
enum class SettingsUse {
  ForCatalog,  ///< the file fills in its options
  ToShow,      ///< the same, but it does not use the catalog
  None,        ///< it does not depend on the folder in which it is run
};

/// How a command prints.
enum class OutputUse {
  Report,    ///< by a Report, in several formats
  Verbatim,  ///< a text that no option changes
};

/// What the command line and the help need to know about a command of mmcat. The options that all
/// commands share, such as --format and --folder, are added by the command line itself.
struct Command {
  const char* name;
  const char* summary;   ///< one line, without a full stop
  const char* examples;  ///< lines of the help, indented by two blanks, each with its line break
  CommandRun (*prepare)(CLI::App& parser);  ///< a PrepareCommand
  std::vector<OutputFormat> formats = {};   ///< besides text and the JSON document
  SettingsUse settings = SettingsUse::ForCatalog;
  const char* remarks = "";  ///< the end of the help
  OutputUse output = OutputUse::Report;
};

/// All commands, in the order of the help.
const std::vector<const Command*>& Commands();

/// Adds the command's own arguments to its parser, which stores their values in an `Options`, and
/// returns what runs the command with them.
template <class Options, void (*AddArguments)(CLI::App&, Options&),
          ExitCode (*Run)(const Options&, const OutputOptions&)>
CommandRun PrepareCommand(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  AddArguments(parser, *options);
  return [options](const OutputOptions& output) { return Run(*options, output); };
}

/// The same for a command without arguments of its own.
template <ExitCode (*Run)(const OutputOptions&)>
CommandRun PrepareCommand(CLI::App& /*parser*/) {
  return Run;
}

/// Help of an argument that is a module.
inline constexpr char kKeyHelp[] =
    "Module: ID or its beginning, ID:LANGUAGE, file, or display name";

/// The same for several modules.
inline constexpr char kKeysHelp[] =
    "Modules: ID or its beginning, ID:LANGUAGE, file, display name, or a pattern with * and ?";

}  // namespace mmcat
