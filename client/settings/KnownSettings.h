#pragma once

#include <string>
#include <vector>

namespace mmcat {

enum class SettingType { Flag, Text, Texts };

/// A setting that a settings file can have. It has the name of a long option of the command line,
/// and fills in that option.
struct KnownSetting {
  const char* table;  ///< of the file
  const char* name;   ///< the key in that table
  SettingType type;
  bool isPath;                         ///< of a file or folder
  const char* byDefault;               ///< the default in words; may be empty
  std::vector<const char*> variables;  ///< of the environment, that set the same

  /// "check.baseline", which is how a file could spell it too.
  std::string FullName() const { return std::string(table) + '.' + name; }
};

/// All settings, in the order in which they are shown.
const std::vector<KnownSetting>& KnownSettings();

/// The table of the settings that only check takes. The others are for all commands.
inline constexpr char kCheckTable[] = "check";

/// The table of the settings that say where to look.
inline constexpr char kCatalogTable[] = "catalog";

/// Returns whether a setting names a part of the catalog. If one is given, it and the others like
/// it replace the catalog of the machine.
bool ReplacesCatalog(const KnownSetting& setting);

}  // namespace mmcat
