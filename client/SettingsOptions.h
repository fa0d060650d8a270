#pragma once

#include <optional>
#include <string>

#include "client/settings/SettingsFile.h"
#include "client/settings/SettingsInForce.h"

namespace CLI {
class App;
}

namespace mmcat {

/// The settings file that the command line asks for.
struct SettingsChoice {
  std::string file;    ///< --settings; empty for the nearest one
  bool isOff = false;  ///< --no-settings
};

/// Reads that file. If it does not exist, returns no value and sets `reason` to the cause. Throws
/// SettingsError.
std::optional<SettingsFile> ReadChosenSettings(const SettingsChoice& choice, std::string& reason);

/// Fills in what the options of a parsed command leave out from the settings file, so that the
/// command need not know of the file. Lists that are not about the catalog get the elements of
/// both. `check` is the parser of the check command, which has the options of all settings, so that
/// values of the file are checked in the same way for every command. Returns what is in force.
/// Throws SettingsError.
SettingsInForce FillInOptions(CLI::App& command, CLI::App& check, const SettingsChoice& choice);

}  // namespace mmcat
