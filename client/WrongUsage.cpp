#include "client/WrongUsage.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/UserPath.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/OutputFormat.h"
#include "client/terminal/Text.h"
#include "common/Path.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// Returns what to write after "mmcat" for a word that other programs use instead. Null for an
/// unknown word.
const char* FindEquivalent(const std::string& word) {
  static const std::map<std::string, const char*> kEquivalents{
      {"audit", "check"},
      {"bom", "inventory --format cyclonedx"},
      {"cat", "show MODULE"},
      {"codes", "help findings"},
      {"conflicts", "check"},
      {"depends", "deps KEY"},
      {"dependencies", "deps KEY"},
      {"describe", "show MODULE"},
      {"dir", "list"},
      {"doctor", "selftest"},
      {"dump", "show MODULE --full"},
      {"folders", "sources"},
      {"grep", "list PATTERN for modules, mmcat which FILE for files"},
      {"hash", "inventory"},
      {"hashes", "inventory"},
      {"info", "show MODULE"},
      {"inspect", "show MODULE"},
      {"lint", "check"},
      {"locate", "which FILE"},
      {"ls", "list"},
      {"man", "help"},
      {"modules", "list"},
      {"order", "deps KEY"},
      {"plan", "deps KEY"},
      {"provides", "which FILE"},
      {"query", "list PATTERN for modules, mmcat which FILE for files"},
      {"rdeps", "deps KEY --reverse"},
      {"requires", "deps KEY"},
      {"rules", "help findings"},
      {"sbom", "inventory --format cyclonedx"},
      {"search", "list PATTERN for modules, mmcat which FILE for files"},
      {"settings", "config"},
      {"test", "check"},
      {"tree", "deps KEY --tree"},
      {"usage", "help"},
      {"validate", "check"},
      {"verify", "check"},
      {"version", "-V"},
      {"view", "show MODULE"},
  };
  const auto found = kEquivalents.find(qm::text::FoldCase(word));
  return found == kEquivalents.end() ? nullptr : found->second;
}

bool IsOption(const std::string& argument) { return argument.size() > 1 && argument[0] == '-'; }

std::string GetOptionName(const std::string& argument) {
  return argument.substr(0, argument.find('='));
}

const CLI::App* FindCommand(const CLI::App& app, const std::string& name) {
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    if (command->get_name() == name) {
      return command;
    }
  }
  return nullptr;
}

/// Returns null if neither the program nor a command has the option.
const CLI::Option* FindOption(const CLI::App& app, const std::string& name) {
  if (const CLI::Option* const option = app.get_option_no_throw(name)) {
    return option;
  }
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    if (const CLI::Option* const option = command->get_option_no_throw(name)) {
      return option;
    }
  }
  return nullptr;
}

bool TakesNextArgument(const CLI::Option* option, const std::string& argument) {
  return option && option->get_items_expected_max() > 0 && argument.find('=') == std::string::npos;
}

void AddOptionNames(const CLI::App& parser, std::vector<std::string>& names) {
  for (const CLI::Option* const option : parser.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
    for (const std::string& name : option->get_snames()) {
      names.push_back('-' + name);
    }
  }
}

/// The end of a remark on an unknown option.
std::string SuggestOption(const std::string& name, const std::vector<std::string>& options,
                          const std::string& hint) {
  for (int format = 0; format <= static_cast<int>(OutputFormat::TeamCity); ++format) {
    const char* const formatName = NameOf(static_cast<OutputFormat>(format));
    if (name == std::string("--") + formatName) {
      return std::string(": unknown option; did you mean --format ") + formatName;
    }
  }
  const std::vector<std::string> nearest = FindNearestNames(name, options);
  return ": unknown option" + (nearest.empty() ? hint : FormatSuggestion(nearest));
}

std::string ExplainLeadingOption(const CLI::App& app, const std::vector<std::string>& arguments) {
  const std::string first = GetOptionName(arguments.front());
  const CLI::Option* const option = FindOption(app, first);
  if (!option) {
    std::vector<std::string> names;
    AddOptionNames(app, names);
    for (const CLI::App* const command : app.get_subcommands(nullptr)) {
      AddOptionNames(*command, names);
    }
    return first + SuggestOption(first, names, "; see mmcat help");
  }
  size_t command = 0;
  while (command < arguments.size() && IsOption(arguments[command])) {
    const bool takesNext =
        TakesNextArgument(FindOption(app, GetOptionName(arguments[command])), arguments[command]);
    command += takesNext ? 2 : 1;
  }
  if (command >= arguments.size() || !FindCommand(app, arguments[command])) {
    return first + ": options follow a command; see mmcat help";
  }
  std::vector<std::string> ordered = arguments;
  std::rotate(ordered.begin(), ordered.begin() + static_cast<std::ptrdiff_t>(command),
              ordered.begin() + static_cast<std::ptrdiff_t>(command) + 1);
  return first + ": options follow the command: " + FormatCommandLine(ordered);
}

std::string DescribeValue(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type == "DIR" ? "a folder" : type == "FILE" ? "a file" : "a value, " + type;
}

}  // namespace

std::string ExplainFirstWord(const CLI::App& app, const std::vector<std::string>& arguments) {
  const std::string& first = arguments.front();
  if (first.empty()) {
    return "the command is empty; see mmcat help";  // probably an unset shell variable
  }
  if (FindCommand(app, first) || app.get_option_no_throw(first)) {
    return "";
  }
  if (IsOption(first)) {
    return ExplainLeadingOption(app, arguments);
  }
  const std::string unknown = first + ": unknown command";
  if (const char* const equivalent = FindEquivalent(first)) {
    return unknown + "; use mmcat " + equivalent;
  }
  std::vector<std::string> names;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  const std::vector<std::string> nearest = FindNearestNames(first, names);
  return unknown + (nearest.empty() ? "; see mmcat help" : FormatSuggestion(nearest));
}

std::string ExplainMissingValue(const CLI::App& app, const std::vector<std::string>& arguments) {
  const CLI::App* const command = FindCommand(app, arguments.front());
  for (size_t i = 1; command && i < arguments.size() && arguments[i] != "--"; ++i) {
    const std::string& argument = arguments[i];
    if (argument.size() > 2 && argument[0] == '/' && !IsFolder(argument) && !IsFile(argument) &&
        command->get_option_no_throw("--" + argument.substr(1))) {
      return argument + ": options begin with dashes; did you mean --" + argument.substr(1);
    }
    const CLI::Option* const option =
        IsOption(arguments[i]) ? command->get_option_no_throw(arguments[i]) : nullptr;
    if (!TakesNextArgument(option, arguments[i])) {
      continue;
    }
    const std::string next = ++i < arguments.size() ? arguments[i] : "";
    const bool isOption = IsOption(next) && command->get_option_no_throw(GetOptionName(next));
    if (isOption || i == arguments.size()) {
      return arguments[i - 1] + " needs " + DescribeValue(*option) +
             (isOption ? "; " + next + " follows it instead" : FormatHelpHint(arguments.front()));
    }
  }
  return "";
}

std::string FormatQuotesHint(const std::vector<std::string>& arguments) {
  // A response file can have any number of arguments, and each check takes a system call.
  constexpr size_t kMostStarts = 100;
  constexpr size_t kMostWords = 8;
  constexpr size_t kLongest = 260;
  for (size_t i = 1; i < std::min(arguments.size(), kMostStarts); ++i) {
    std::string path = arguments[i];
    const size_t end = std::min(arguments.size(), i + kMostWords);
    for (size_t last = i + 1; last < end && !IsOption(arguments[last]); ++last) {
      path += ' ' + arguments[last];
      if (path.size() > kLongest) {
        break;
      }
      if (qm::common::PathExists(ToSystemPath(path))) {
        return "; if you mean \"" + path + "\", put it in quotes";
      }
    }
  }
  return "";
}

std::vector<std::string> ExplainUnexpected(const CLI::App& app,
                                           const std::vector<std::string>& arguments,
                                           std::vector<std::string> unexpected) {
  std::vector<std::string> options;
  if (const CLI::App* const command = FindCommand(app, arguments.front())) {
    AddOptionNames(*command, options);
  }
  const std::string hint = FormatHelpHint(arguments.front());
  std::vector<std::string> texts;
  for (const std::string& argument : arguments) {
    const auto found = std::find(unexpected.begin(), unexpected.end(), argument);
    if (found == unexpected.end()) {
      continue;
    }
    unexpected.erase(found);
    const std::string name = GetOptionName(argument);
    texts.push_back(IsOption(name) ? name : argument + ": unexpected argument");
    texts.back() += IsOption(name) ? SuggestOption(name, options, hint) : hint;
  }
  return texts;
}

std::string FormatHelpHint(const std::string& command) { return "; see mmcat help " + command; }

std::string FormatCommandLine(const std::vector<std::string>& arguments) {
  std::string line = "mmcat";
  for (const std::string& argument : arguments) {
    line += ' ' + QuoteArgument(argument);
  }
  return line;
}

}  // namespace mmcat
