#include "client/settings/SettingsFile.h"

#include <windows.h>

#include <algorithm>
#include <cctype>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/SystemError.h"
#include "client/catalog/TextFile.h"
#include "client/terminal/NearestNames.h"
#include "common/Path.h"
#include "text/Utf.h"

// Configures the library: it only parses, takes only UTF-8 strings, and limits how deeply values
// nest.
#define TOML_ENABLE_FORMATTERS 0
#define TOML_ENABLE_WINDOWS_COMPAT 0
#define TOML_MAX_NESTED_VALUES 16
#include <toml++/toml.h>

namespace mmcat {

namespace {

using qm::common::WideString;

constexpr size_t kLargest = 1024 * 1024;  // bytes of a file
/// The most dots that a line can have. The library frees nested tables recursively, and each dot of
/// a key nests one; since it limits how deep values nest, this limits the recursion.
constexpr std::ptrdiff_t kMostDots = 200;

constexpr char kSeeHelp[] = "; mmcat help config shows an example";

bool Contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

/// The length of the root of a full path: that of its drive, or the shared folder of a server.
size_t MeasureRoot(std::wstring_view path) {
  if (path.substr(0, 2) != LR"(\\)") {
    return 3;
  }
  const size_t share = path.find(L'\\', 2);
  return share == path.npos ? path.size() : std::min(path.find(L'\\', share + 1), path.size());
}

FilePosition PositionOf(const toml::source_region& source) {
  return {source.begin.line, source.begin.column};
}

/// What is wrong with the syntax, in words of the library, and what to do.
std::string Explain(const toml::parse_error& error) {
  std::string text(error.description());
  if (Contains(text, "nested value depth")) {
    return std::string("values are nested too deeply") + kSeeHelp;
  }
  if (Contains(text, "cannot redefine")) {
    const size_t end = text.rfind('\'');
    const size_t start = end == text.npos ? text.npos : text.rfind('\'', end - 1);
    return (start == text.npos ? "this" : text.substr(start + 1, end - start - 1)) +
           " is there twice; remove one of them";
  }
  text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  if (Contains(text, "utf-8")) {
    return text + "; save the file as UTF-8";
  }
  if (Contains(text, "escape sequence") || Contains(text, "unicode scalar")) {
    return text + R"(; put paths into single quotes: 'C:\Modules')";
  }
  if (Contains(text, "value type") || Contains(text, "boolean")) {
    return text + "; put texts into quotes: \"text\"";
  }
  return text + kSeeHelp;
}

/// Cuts the middle out of a very long text.
std::string Shorten(const std::string& text) {
  constexpr size_t kKept = 200;  // bytes at each end
  if (text.size() <= 2 * kKept) {
    return text;
  }
  const auto isInCharacter = [&](size_t i) {
    return (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;
  };
  size_t left = kKept;
  size_t right = text.size() - kKept;
  while (left > 0 && isInCharacter(left)) {
    --left;
  }
  while (right < text.size() && isInCharacter(right)) {
    ++right;
  }
  return text.substr(0, left) + " ... " + text.substr(right);
}

/// Collects the settings of a file that was parsed.
class Collector {
 public:
  explicit Collector(SettingsFile& file) : m_file(file) {}

  void AddTable(const toml::key& key, const toml::node& node) {
    const std::string name(key.str());
    std::vector<std::string> tables;
    for (const KnownSetting& known : KnownSettings()) {
      if (name == known.name) {
        FailAt(key, name + " belongs in the table [" + known.table + ']');
      }
      tables.emplace_back(known.table);
    }
    if (std::find(tables.begin(), tables.end(), name) == tables.end()) {
      FailUnknown(key,
                  node.is_table() || node.is_array_of_tables()
                      ? "unknown table [" + name + ']'
                      : "unknown setting " + name + " outside of a table",
                  tables);
    }
    const toml::table* const table = node.as_table();
    if (!table) {
      FailAt(key, name + " must be a table: a line [" + name + "], with its settings below");
    }
    for (const auto& [settingKey, settingNode] : *table) {
      AddSetting(name, settingKey, settingNode);
    }
  }

 private:
  template <class Node>
  [[noreturn]] void FailAt(const Node& node, const std::string& problem) {
    throw MakeSettingsError(m_file, PositionOf(node.source()), problem);
  }

  [[noreturn]] void FailUnknown(const toml::key& key, const std::string& problem,
                                const std::vector<std::string>& names) {
    const std::vector<std::string> nearest = FindNearestNames(std::string(key.str()), names);
    FailAt(key, problem + (nearest.empty() ? kSeeHelp : FormatSuggestion(nearest)));
  }

  void AddSetting(const std::string& table, const toml::key& key, const toml::node& node) {
    const KnownSetting& known = FindSetting(table, key);
    FileSetting setting{&known, PositionOf(key.source()), {}};
    const toml::array* const list = node.as_array();
    if (known.type == SettingType::Texts && list) {
      for (const toml::node& element : *list) {
        setting.values.push_back(ReadValue(known, element));
      }
    } else {
      setting.values.push_back(ReadValue(known, node));
    }
    m_file.settings.push_back(std::move(setting));
  }

  const KnownSetting& FindSetting(const std::string& table, const toml::key& key) {
    const std::string name(key.str());
    std::vector<std::string> names;
    const KnownSetting* elsewhere = nullptr;
    for (const KnownSetting& known : KnownSettings()) {
      if (table == known.table) {
        if (name == known.name) {
          return known;
        }
        names.emplace_back(known.name);
      } else if (name == known.name) {
        elsewhere = &known;
      }
    }
    if (elsewhere) {
      FailAt(key, name + " belongs in the table [" + elsewhere->table + ']');
    }
    // Only the user of a run decides what it writes, and where.
    for (const char* const option : {"output", "write-baseline", "prune-baseline", "json"}) {
      if (name == option) {
        FailAt(key, name + " can only be given on the command line");
      }
    }
    FailUnknown(key, "unknown setting " + name, names);
  }

  FileValue ReadValue(const KnownSetting& known, const toml::node& node) {
    const std::string name(known.name);
    const FilePosition position = PositionOf(node.source());
    if (known.type == SettingType::Flag) {
      if (!node.is_boolean()) {
        FailAt(node, name + " must be true or false, without quotes");
      }
      return {**node.as_boolean() ? "true" : "false", position};
    }
    if (!node.is_string()) {
      FailAt(node, name + (known.type == SettingType::Texts
                               ? " must be a text or a list of texts: [\"one\", \"two\"]"
                               : " must be a text: \"text\""));
    }
    const std::string& text = **node.as_string();
    if (text.empty()) {
      FailAt(node, name + " is empty; leave the line out for the default");
    }
    if (std::any_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; })) {
      FailAt(node, name + " has a control character; put paths into single quotes: 'C:\\new'");
    }
    return {text, position};
  }

  SettingsFile& m_file;
};

/// Throws SettingsError for text on which the library would exhaust the stack.
void RequireFewDots(const SettingsFile& file, const std::string& text) {
  size_t line = 1;
  for (size_t start = 0; start < text.size(); ++line) {
    const size_t end = std::min(text.find('\n', start), text.size());
    const auto begin = text.begin() + static_cast<std::ptrdiff_t>(start);
    if (std::count(begin, text.begin() + static_cast<std::ptrdiff_t>(end), '.') > kMostDots) {
      throw MakeSettingsError(file, {line, 1},
                              "the line is too long; write one element of a list in each line");
    }
    start = end + 1;
  }
}

}  // namespace

const FileSetting* SettingsFile::Find(const KnownSetting& setting) const {
  const auto found =
      std::find_if(settings.begin(), settings.end(),
                   [&](const FileSetting& candidate) { return candidate.setting == &setting; });
  return found == settings.end() ? nullptr : &*found;
}

SettingsError MakeSettingsError(const SettingsFile& file, const FilePosition& position,
                                const std::string& problem) {
  return SettingsError(file.path + ':' + std::to_string(position.line) + ':' +
                       std::to_string(position.column) + ": " + Shorten(problem));
}

std::optional<std::string> FindSettingsFile() {
  const WideString name(qm::text::ToWide(kSettingsFileName));
  WideString folder = qm::common::ResolveFullPath(L".");
  const size_t root = MeasureRoot(folder);
  while (true) {
    const WideString path = qm::common::JoinPath(folder, name);
    const DWORD attributes = ::GetFileAttributesW(qm::common::ToExtendedPath(path).c_str());
    const DWORD code = attributes == INVALID_FILE_ATTRIBUTES ? ::GetLastError() : ERROR_SUCCESS;
    // A file that exists but cannot be accessed ends the search; reading it reports the error.
    if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND) {
      return SpellPath(qm::text::ToUtf8(path));
    }
    if (std::wstring_view(folder).size() <= root) {
      return std::nullopt;
    }
    folder = qm::common::ParentFolder(folder);
  }
}

SettingsFile ReadSettingsFile(const std::string& path) {
  const std::string full = ResolveUserPath(path);
  const DWORD attributes =
      ::GetFileAttributesW(qm::common::ToExtendedPath(ToSystemPath(full)).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    throw SettingsError(full +
                        ": cannot read the settings: " + FormatSystemError(::GetLastError()));
  }
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
    throw SettingsError(full + ": this is a folder, not a settings file; --no-settings ignores it");
  }
  std::string text;
  try {
    text = ReadTextFile(full, kLargest);
  } catch (const std::runtime_error& failure) {
    throw SettingsError(full + ": cannot read the settings: " + failure.what() +
                        "; --no-settings ignores the file");
  }
  return ParseSettings(full, text);
}

SettingsFile ParseSettings(const std::string& path, const std::string& text) {
  SettingsFile file;
  file.path = path;
  file.folder =
      qm::text::ToUtf8(qm::common::ParentFolder(qm::common::ResolveFullPath(ToSystemPath(path))));
  RequireFewDots(file, text);
  try {
    const toml::table document = toml::parse(text);
    Collector collector(file);
    for (const auto& [key, node] : document) {
      collector.AddTable(key, node);
    }
  } catch (const toml::parse_error& error) {
    throw MakeSettingsError(file, PositionOf(error.source()), Explain(error));
  }
  return file;
}

std::string ResolvePath(const SettingsFile& file, const FileValue& value) {
  const WideString folder(qm::text::ToWide(file.folder));
  const WideString given = ToSystemPath(value.text);
  const std::wstring_view path = given;
  const auto isSlash = [&](size_t i) {
    return i < path.size() && (path[i] == L'\\' || path[i] == L'/');
  };
  const bool hasDrive = path.size() > 1 && path[1] == L':';
  if (hasDrive && !isSlash(2)) {
    throw MakeSettingsError(file, value.position,
                            value.text + ": a path with a drive must begin at its root");
  }
  if (hasDrive || (isSlash(0) && isSlash(1))) {
    return ResolveUserPath(value.text);
  }
  const WideString base(isSlash(0) ? std::wstring_view(folder).substr(0, MeasureRoot(folder))
                                   : std::wstring_view(folder));
  return SpellPath(qm::text::ToUtf8(
      qm::common::ResolveFullPath(qm::common::JoinPath(base, path.substr(isSlash(0) ? 1 : 0)))));
}

}  // namespace mmcat
