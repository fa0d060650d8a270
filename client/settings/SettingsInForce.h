#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mmcat {

enum class SettingSource { Arguments, File, Environment, Default };

/// "command-line", "file", "environment" or "default".
const char* GetSourceName(SettingSource source) noexcept;

/// A value of a setting that is in force, or the fact that it has none.
struct ValueInForce {
  std::string setting;  ///< such as "check.baseline"
  /// Paths are full, as the user spells them. Those from the environment may be relative.
  std::optional<std::string> value;
  std::string words;  ///< what is in force if there is no value; may be empty
  SettingSource source = SettingSource::Default;
  std::string variable;        ///< of the environment, if that is the source
  std::optional<size_t> line;  ///< in the settings file; no value if another setting decided
};

struct SettingsInForce {
  std::string file;                  ///< full path; empty if no file was read
  std::string reason;                ///< why no file was read
  std::vector<ValueInForce> values;  ///< those of a list are neighbours
};

/// Sets what mmcat config shows.
void UseSettings(SettingsInForce settings) noexcept;

const SettingsInForce& CurrentSettings() noexcept;

}  // namespace mmcat
