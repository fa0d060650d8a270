#include "client/SettingsOptions.h"

#include <windows.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "client/catalog/PathSpelling.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

/// Reads an environment variable. No value if it is not set.
std::optional<std::string> ReadVariable(const char* name) {
  const std::wstring wideName = qm::text::ToWide(name);
  ::SetLastError(ERROR_SUCCESS);
  std::wstring value(::GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
  if (value.empty() && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
    return std::nullopt;
  }
  value.resize(
      ::GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return qm::text::ToUtf8(value);
}

std::string OptionName(const KnownSetting& setting) { return "--" + std::string(setting.name); }

/// Fills in the options of one command.
class Filler {
 public:
  Filler(CLI::App& command, CLI::App& check, const SettingsFile* file)
      : m_command(command), m_check(check), m_file(file) {
    for (const KnownSetting& setting : KnownSettings()) {
      const CLI::Option* const option = FindOption(setting);
      if (option && option->count() > 0) {
        m_given[&setting] = option->results();
        m_replacesCatalog = m_replacesCatalog || ReplacesCatalog(setting);
      }
    }
  }

  void FillIn() {
    const std::vector<KnownSetting>& settings = KnownSettings();
    // Backwards, because the spelling of paths, which comes late, affects messages about the
    // others.
    for (auto setting = settings.rbegin(); m_file && setting != settings.rend(); ++setting) {
      if (const FileSetting* const found = m_file->Find(*setting)) {
        CheckValues(*found);
        if (IsInForce(*setting)) {
          FillIn(*found);
        }
      }
    }
  }

  std::vector<ValueInForce> ListValues() const {
    std::vector<ValueInForce> values;
    for (const KnownSetting& setting : KnownSettings()) {
      const size_t before = values.size();
      AddGiven(setting, values);
      if (m_file && IsInForce(setting)) {
        AddFromFile(setting, values);
      }
      if (values.size() == before) {
        AddOtherwise(setting, values);
      }
    }
    return values;
  }

 private:
  /// Returns null if the command does not take the setting.
  CLI::Option* FindOption(const KnownSetting& setting) const {
    const bool isForIt =
        setting.table != std::string(kCheckTable) || m_command.get_name() == kCheckTable;
    return isForIt ? m_command.get_option_no_throw(OptionName(setting)) : nullptr;
  }

  /// A flag may also be given as "--json=false".
  bool IsJsonGiven() const {
    const CLI::Option* const json = m_command.get_option_no_throw("--json");
    return json && json->count() > 0 && json->as<bool>();
  }

  /// Returns whether the file's values of a setting apply beside what the command line gives.
  bool IsInForce(const KnownSetting& setting) const {
    const bool isCatalog = setting.table == std::string(kCatalogTable);
    const bool isGiven = m_given.count(&setting) > 0 && setting.type != SettingType::Texts;
    const bool isFormat = FindOption(setting) && setting.name == std::string("format");
    return !isGiven && !(isCatalog && m_replacesCatalog) && !(isFormat && IsJsonGiven());
  }

  void CheckValue(CLI::Option& option, const FileSetting& setting, const FileValue& value,
                  std::string text) const {
    const std::string problem = (*option.get_validator(0))(text);
    if (!problem.empty()) {
      throw MakeSettingsError(
          *m_file, value.position,
          setting.setting->name + (": " + problem) +
              (setting.setting->isPath ? "; relative paths begin at the folder of this file" : ""));
    }
  }

  /// Throws SettingsError if the option does not accept a value. Paths are left to FillIn, since
  /// they matter only to commands that use them.
  void CheckValues(const FileSetting& setting) const {
    const bool isRecursive =
        setting.setting->name == std::string("recursive") && setting.values.front().text == "true";
    if (isRecursive && !HasFolders()) {
      throw MakeSettingsError(*m_file, setting.position, "recursive needs folder beside it");
    }
    if (setting.setting->type != SettingType::Flag && !setting.setting->isPath) {
      for (const FileValue& value : setting.values) {
        CheckValue(*m_check.get_option(OptionName(*setting.setting)), setting, value, value.text);
      }
    }
  }

  void FillIn(const FileSetting& setting) {
    CLI::Option* const option = FindOption(*setting.setting);
    const bool isFlag = setting.setting->type == SettingType::Flag;
    if (!option || setting.values.empty() || (isFlag && setting.values.front().text == "false")) {
      return;
    }
    for (const FileValue& value : setting.values) {
      std::string text = value.text;
      if (setting.setting->isPath) {
        text = ResolvePath(*m_file, value);
        if (option->get_type_name() == "DIR") {
          CheckValue(*option, setting, value, text);
        }
      }
      option->add_result(std::move(text));
    }
    try {
      option->run_callback();
    } catch (const CLI::Error& error) {
      throw MakeSettingsError(*m_file, setting.position, error.what());
    }
  }

  bool HasFolders() const {
    return std::any_of(
        m_file->settings.begin(), m_file->settings.end(), [](const FileSetting& setting) {
          return setting.setting->name == std::string("folder") && !setting.values.empty();
        });
  }

  static ValueInForce MakeValue(const KnownSetting& setting, SettingSource source) {
    ValueInForce value;
    value.setting = setting.FullName();
    value.source = source;
    return value;
  }

  void AddGiven(const KnownSetting& setting, std::vector<ValueInForce>& values) const {
    const auto given = m_given.find(&setting);
    if (given == m_given.end()) {
      return;
    }
    for (const std::string& text : given->second) {
      ValueInForce value = MakeValue(setting, SettingSource::Arguments);
      value.value = setting.isPath ? ResolveUserPath(text) : text;
      values.push_back(std::move(value));
    }
  }

  void AddFromFile(const KnownSetting& setting, std::vector<ValueInForce>& values) const {
    const FileSetting* const found = m_file->Find(setting);
    for (size_t i = 0; found && i < found->values.size(); ++i) {
      ValueInForce value = MakeValue(setting, SettingSource::File);
      value.value = setting.isPath ? ResolvePath(*m_file, found->values[i]) : found->values[i].text;
      value.line = found->values[i].position.line;
      values.push_back(std::move(value));
    }
  }

  bool FileReplacesCatalog() const {
    return m_file && std::any_of(m_file->settings.begin(), m_file->settings.end(),
                                 [](const FileSetting& setting) {
                                   return ReplacesCatalog(*setting.setting) &&
                                          !setting.values.empty();
                                 });
  }

  /// Adds what is in force if neither the command line nor the file has the setting.
  void AddOtherwise(const KnownSetting& setting, std::vector<ValueInForce>& values) const {
    if (ReplacesCatalog(setting) && (m_replacesCatalog || FileReplacesCatalog())) {
      values.push_back(
          MakeValue(setting, m_replacesCatalog ? SettingSource::Arguments : SettingSource::File));
      return;
    }
    const size_t before = values.size();
    for (const char* const variable : setting.variables) {
      if (const std::optional<std::string> text = ReadVariable(variable)) {
        AddFromEnvironment(setting, variable, *text, values);
      }
    }
    if (values.size() == before) {
      values.push_back(MakeValue(setting, SettingSource::Default));
      const std::string words = setting.byDefault;
      (setting.isPath ? values.back().words : values.back().value.emplace()) = words;
      if (words.empty()) {
        values.back().value.reset();
      }
    }
  }

  static void AddFromEnvironment(const KnownSetting& setting, const char* variable,
                                 const std::string& text, std::vector<ValueInForce>& values) {
    ValueInForce value = MakeValue(setting, SettingSource::Environment);
    value.variable = variable;
    if (setting.type == SettingType::Flag) {  // any text sets it
      if (!text.empty()) {
        value.value = "true";
        values.push_back(value);
      }
      return;
    }
    const char separator = setting.type == SettingType::Texts ? ',' : '\0';
    for (const std::string& path : CLI::detail::split(text, separator)) {
      value.value = path.empty() ? std::nullopt : std::optional(SpellPath(path));
      values.push_back(value);
    }
  }

  CLI::App& m_command;
  CLI::App& m_check;
  const SettingsFile* m_file;
  std::map<const KnownSetting*, std::vector<std::string>> m_given;  ///< on the command line
  bool m_replacesCatalog = false;                                   ///< whether the options do
};

}  // namespace

std::optional<SettingsFile> ReadChosenSettings(const SettingsChoice& choice, std::string& reason) {
  constexpr char kVariable[] = "QM_NO_SETTINGS";
  if (choice.isOff) {
    reason = "because of --no-settings";
    return std::nullopt;
  }
  if (!choice.file.empty()) {
    return ReadSettingsFile(choice.file);
  }
  if (!ReadVariable(kVariable).value_or("").empty()) {
    reason = std::string("because ") + kVariable + " is set";
    return std::nullopt;
  }
  if (const std::optional<std::string> path = FindSettingsFile()) {
    return ReadSettingsFile(*path);
  }
  reason = std::string("neither ") + ResolveUserPath(".") + " nor a folder above has " +
           kSettingsFileName;
  return std::nullopt;
}

SettingsInForce FillInOptions(CLI::App& command, CLI::App& check, const SettingsChoice& choice) {
  SettingsInForce inForce;
  const std::optional<SettingsFile> file = ReadChosenSettings(choice, inForce.reason);
  Filler filler(command, check, file ? &*file : nullptr);
  filler.FillIn();
  inForce.file = file ? ResolveUserPath(file->path) : "";
  inForce.values = filler.ListValues();
  return inForce;
}

}  // namespace mmcat
