#include "client/Completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>

#include "client/SettingsOptions.h"
#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogSettings.h"
#include "client/catalog/UserPath.h"
#include "client/terminal/Console.h"
#include "client/terminal/Progress.h"
#include "client/terminal/Report.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// Collects the candidates that begin like the word to complete.
class Candidates {
 public:
  explicit Candidates(std::string word) : m_word(std::move(word)) {}

  void Add(const std::string& candidate, const std::string& meaning) {
    const std::string folded = qm::text::FoldCase(candidate);
    if (folded.rfind(qm::text::FoldCase(m_word), 0) == 0 && m_seen.insert(folded).second) {
      m_lines += candidate + '\t' + meaning + '\n';
    }
  }
  void AddFiles() { m_lines += ":files\t\n"; }
  void AddFolders() { m_lines += ":folders\t\n"; }

  const std::string& Word() const { return m_word; }
  const std::string& Lines() const { return m_lines; }

 private:
  std::string m_word;
  std::set<std::string> m_seen;
  std::string m_lines;
};

void AddCommands(const CLI::App& app, Candidates& candidates) {
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    candidates.Add(command->get_name(), command->get_description());
  }
}

/// Returns null if there is no such command.
const CLI::App* FindCommand(const CLI::App& app, const std::string& name) {
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    if (command->get_name() == name) {
      return command;
    }
  }
  return nullptr;
}

void AddOptions(const CLI::App& command, Candidates& candidates) {
  const auto isListed = [](const CLI::Option* option) { return !option->get_group().empty(); };
  for (const CLI::Option* const option : command.get_options(isListed)) {
    for (const std::string& name : option->get_lnames()) {
      candidates.Add("--" + name, option->get_description());
    }
  }
}

/// Adds the values of an option by its type: those listed in one such as "native|windows", files
/// for "FILE", folders for "DIR".
void AddValues(const std::string& type, Candidates& candidates) {
  if (type == "DIR") {
    candidates.AddFolders();
  } else if (type == "FILE") {
    candidates.AddFiles();
  } else if (type.find('|') != std::string::npos) {
    for (const std::string& value : CLI::detail::split(type, '|')) {
      candidates.Add(value, "");
    }
  }
}

/// Returns the option of a command that a word names. Null if there is none or it takes no value.
const CLI::Option* FindOption(const CLI::App& command, const std::string& word) {
  const CLI::Option* const option =
      word.rfind("--", 0) == 0 ? command.get_option_no_throw(word) : nullptr;
  return option && option->get_type_size() > 0 ? option : nullptr;
}

void AddFolder(const std::string& folder, CatalogSettings& settings) {
  if (ValidateSearchFolder(folder).empty()) {
    settings.folders.push_back(folder);
  }
}

/// Adds the search folders of a settings file. Ignores a file with errors, because completion is
/// not the moment to report them.
void AddFoldersFromFile(const SettingsChoice& choice, CatalogSettings& settings) {
  std::string reason;
  try {
    const std::optional<SettingsFile> file = ReadChosenSettings(choice, reason);
    for (const FileSetting& setting : file ? file->settings : std::vector<FileSetting>()) {
      const std::string name = setting.setting->FullName();
      for (const FileValue& value : setting.values) {
        if (name == "catalog.folder") {
          AddFolder(ResolvePath(*file, value), settings);
        }
        settings.isRecursive =
            settings.isRecursive || (name == "catalog.recursive" && value.text == "true");
      }
    }
  } catch (const SettingsError&) {
    settings = {};
  }
}

bool IsCatalogOption(const std::string& option) {
  const std::vector<KnownSetting>& settings = KnownSettings();
  return std::any_of(settings.begin(), settings.end(), [&](const KnownSetting& setting) {
    return option == "--" + std::string(setting.name) && ReplacesCatalog(setting);
  });
}

CatalogSettings ReadSettings(const std::vector<std::string>& words) {
  CatalogSettings settings;
  SettingsChoice choice;
  bool replacesFile = false;  // whether the typed options replace its catalog
  for (size_t i = 0; i < words.size(); ++i) {
    const std::string next = i + 1 < words.size() ? words[i + 1] : "";
    if (words[i] == "--folder") {
      AddFolder(next, settings);
    } else if (words[i] == "--settings") {
      choice.file = next;
    }
    choice.isOff = choice.isOff || words[i] == "--no-settings";
    replacesFile = replacesFile || IsCatalogOption(words[i]);
    settings.isRecursive = settings.isRecursive || words[i] == "--recursive";
  }
  if (!replacesFile) {
    AddFoldersFromFile(choice, settings);
  }
  return settings;
}

/// Adds the IDs of the modules in the catalog that the settings select.
void AddModules(const CatalogSettings& settings, Candidates& candidates) {
  ApplyCatalogSettings(settings);
  for (const NamedModule& module : Catalog().Names()) {
    if (!module.moduleId.empty()) {
      candidates.Add(module.moduleId, GetFileName(module.path));
    }
  }
}

bool TakesModules(const CLI::App& command) {
  for (const CLI::Option* const option : command.get_options()) {
    if (option->get_positional() &&
        (option->get_single_name() == "KEY" || option->get_single_name() == "MODULE")) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::function<ExitCode()> Complete(const CLI::App& app, const std::vector<std::string>& words) {
  const bool hasWord = !words.empty() && words.back().rfind('=', 0) == 0;
  Candidates candidates(hasWord ? words.back().substr(1) : "");
  const std::vector<std::string> before(words.begin(), words.end() - (hasWord ? 1 : 0));
  const CLI::App* const command = before.empty() ? nullptr : FindCommand(app, before.front());
  bool takesModules = false;
  if (!command) {
    if (before.empty()) {
      candidates.Add("help", "Explain a command");
    }
    const bool isTopic = before == std::vector<std::string>{"help"};
    if (before.empty() || isTopic) {
      AddCommands(app, candidates);
    }
    if (isTopic) {
      candidates.Add("findings", "What a check finds");
    }
  } else if (const CLI::Option* const option = FindOption(*command, before.back())) {
    AddValues(option->get_type_name(), candidates);
  } else if (candidates.Word().rfind('-', 0) == 0) {
    AddOptions(*command, candidates);
  } else {
    for (const CLI::Option* const positional : command->get_options()) {
      if (positional->get_positional()) {
        AddValues(positional->get_type_name(), candidates);
      }
    }
    takesModules = TakesModules(*command);
  }
  return [candidates, takesModules, settings = ReadSettings(before)]() mutable {
    if (takesModules) {
      Progress::Disable();
      DisableHints();
      AddModules(settings, candidates);
      candidates.AddFiles();
    }
    WriteOutput(candidates.Lines());
    return kSuccess;
  };
}

}  // namespace mmcat
