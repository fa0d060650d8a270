#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "client/settings/KnownSettings.h"

namespace mmcat {

/// Where something begins in a settings file; both count from 1.
struct FilePosition {
  size_t line = 0;
  size_t column = 0;
};

/// A settings file cannot be read or is wrong. The text is for the user: it begins with the file,
/// as "FILE:LINE:COLUMN" if something in it is wrong.
class SettingsError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct FileValue {
  std::string text;  ///< as the file has it; "true" or "false" for a flag
  FilePosition position;
};

struct FileSetting {
  const KnownSetting* setting = nullptr;
  FilePosition position;          ///< of its key
  std::vector<FileValue> values;  ///< one, unless the setting is a list
};

/// The settings of a file. Texts are UTF-8.
struct SettingsFile {
  std::string path;    ///< full, as the user spells it
  std::string folder;  ///< that of the file, spelled as Windows does
  std::vector<FileSetting> settings;

  /// Returns null if the file does not have the setting.
  const FileSetting* Find(const KnownSetting& setting) const;
};

/// The name of the file that is looked for.
inline constexpr char kSettingsFileName[] = "mmcat.toml";

/// Returns the full path of the nearest settings file, as the user spells it: the one in the
/// current folder, or else in the nearest folder above it. No value if no folder up to the root has
/// one.
std::optional<std::string> FindSettingsFile();

/// Reads a settings file. Throws SettingsError if it cannot be read or is wrong.
SettingsFile ReadSettingsFile(const std::string& path);

/// Parses the text of a settings file. `path` is that of the file. Unknown tables and keys, and
/// values of wrong types, are errors. Throws SettingsError.
SettingsFile ParseSettings(const std::string& path, const std::string& text);

/// Resolves a path in the file to a full path, as the user spells it. Relative paths are relative
/// to the folder of the file. Throws SettingsError.
std::string ResolvePath(const SettingsFile& file, const FileValue& value);

/// Makes the error for a problem at a position of the file. The middle of a long text is cut out.
SettingsError MakeSettingsError(const SettingsFile& file, const FilePosition& position,
                                const std::string& problem);

}  // namespace mmcat
