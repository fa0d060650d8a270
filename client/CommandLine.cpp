#include "client/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include "client/Completion.h"
#include "client/Help.h"
#include "client/OutputFile.h"
#include "client/ResponseFile.h"
#include "client/SettingsOptions.h"
#include "client/WrongUsage.h"
#include "client/catalog/CatalogSettings.h"
#include "client/catalog/PathSpelling.h"
#include "client/catalog/UserPath.h"
#include "client/commands/Advice.h"
#include "client/commands/Commands.h"
#include "client/findings/Rules.h"
#include "client/settings/SettingsInForce.h"
#include "client/terminal/Console.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Page.h"
#include "client/terminal/Progress.h"
#include "client/terminal/Report.h"
#include "client/terminal/WrapLines.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

constexpr char kExamples[] =
    "  mmcat list --folder samples/modules    the modules in a folder\n"
    "  mmcat check --folder samples/modules   what is wrong with them\n"
    "  mmcat which LarkfieldZip32.dll         which modules deliver a file\n"
    "  mmcat show TinyZip                     what a module contains\n"
    "  mmcat deps PlotterSuite                what a module needs, in merge order\n"
    "  mmcat list --json                      output for other programs\n";

std::string ValidatePathSpelling(const std::string& spelling) {
  return spelling == "native" || spelling == "windows"
             ? ""
             : ExplainChoice(spelling, {"native", "windows"});
}

/// Parses the shared options and those of the command that was given.
class Parser {
 public:
  Parser() : m_app("Lists, searches and checks the merge modules (.msm) of a catalog", "mmcat") {
    m_app.set_help_flag("-h,--help", "Print this help and exit");
    UseHelpFormat(m_app, kExamples);
    // Do not treat a path such as "/home/x.msm" as an option.
    m_app.allow_windows_style_options(false);
    m_app.require_subcommand(1);
    m_app.set_version_flag("-V,--version", "mmcat " MMCAT_VERSION, "Print the version and exit");
    m_app.footer(
        "Exit codes: 0 success, 1 findings (deps, check, selftest), 2 wrong usage, 3 nothing "
        "matched or no modules, 4 a module or folder could not be read, 5 the server failed, 6 the "
        "output could not be written.\n"
        "@FILE stands for the arguments in a file, one on each line; words after -- are taken as "
        "they are. The nearest mmcat.toml has the settings of a team; see mmcat help config.\n"
        "See mmcat help COMMAND for a command, mmcat help findings for what a check finds.");
    for (const Command* command : Commands()) {
      Add(*command);
    }
  }

  CommandLine Read(const std::vector<std::string>& given) {
    std::vector<std::string> arguments;
    try {
      arguments = ExpandResponseFiles(given);
    } catch (const std::runtime_error& failure) {
      PrintRemark(failure.what());
      return kUsage;
    }
    if (arguments.empty()) {
      WriteHelp(m_app.help());
      return kUsage;
    }
    if (arguments.front() == "__complete") {
      arguments.erase(arguments.begin());
      return Complete(m_app, arguments);
    }
    if (const std::optional<ExitCode> answered = AnswerHelp(arguments)) {
      return *answered;
    }
    if (const std::optional<ExitCode> done = Parse(arguments)) {
      return *done;
    }
    const std::string wrong = Complement(given);
    if (!wrong.empty()) {
      PrintRemark(wrong);
      return kUsage;
    }
    return MakeCommand();
  }

 private:
  /// Parses arguments that do not ask for help. Returns an exit code if the run ends here, because
  /// the arguments are wrong (after a remark) or ask for the version.
  std::optional<ExitCode> Parse(const std::vector<std::string>& arguments) {
    std::string wrong = ExplainFirstWord(m_app, arguments);
    wrong = wrong.empty() ? ExplainMissingValue(m_app, arguments) : wrong;
    if (!wrong.empty()) {
      PrintRemark(wrong);
      return kUsage;
    }
    try {
      // The library expects the last argument first.
      m_app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForVersion& version) {
      WriteOutput(version.what() + std::string(1, '\n'));
      return kSuccess;
    } catch (const CLI::ExtrasError&) {
      for (const std::string& text : ExplainUnexpected(m_app, arguments, m_app.remaining(true))) {
        PrintRemark(text);
      }
      return kUsage;
    } catch (const CLI::ParseError& error) {
      const std::string quotes = FormatQuotesHint(arguments);
      PrintRemark(error.what() + (quotes.empty() ? FormatHelpHint(arguments.front()) : quotes));
      return kUsage;
    }
    return std::nullopt;
  }

  /// Completes the command line from the settings and from the extension of the output file.
  /// Returns what is wrong, or an empty text. `given` are the arguments as typed, before response
  /// files are expanded.
  std::string Complement(const std::vector<std::string>& given) {
    const bool isFormatTyped = m_isFormatChosen;
    try {
      FillInFromSettings();
    } catch (const SettingsError& failure) {
      return failure.what();
    }
    if (m_settings.isRecursive && m_settings.folders.empty()) {
      return "--recursive requires --folder" +
             FormatHelpHint(m_app.get_subcommands().front()->get_name());
    }
    if (m_outputFile.empty()) {
      return "";
    }
    ChooseFormatOfFile(isFormatTyped);
    const std::string wrong = ExplainOutputFile(m_outputFile, ListFilesInUse(given));
    return wrong.empty() ? "" : "--output " + wrong;
  }

  /// The files that the run reads, as far as the command line and the settings name them.
  std::vector<std::string> ListFilesInUse(const std::vector<std::string>& given) const {
    std::vector<std::string> files;
    for (const std::string& argument : given) {
      if (argument == "--") {
        break;
      }
      if (argument.size() > 1 && argument.front() == '@') {
        files.push_back(argument.substr(1));
      }
    }
    for (const CLI::Option* const option : m_app.get_subcommands().front()->get_options()) {
      if (option->get_positional()) {
        const std::vector<std::string> words = option->results();  // most are not files
        std::copy_if(words.begin(), words.end(), std::back_inserter(files), IsFile);
      }
    }
    if (m_settingsUse == SettingsUse::None) {
      return files;
    }
    const SettingsInForce& settings = CurrentSettings();
    files.push_back(settings.file);
    for (const ValueInForce& value : settings.values) {
      if (value.value && value.setting == "check.baseline") {
        files.push_back(*value.value);
      } else if (value.value && value.setting == "catalog.data") {
        files.push_back(*value.value + "/Repositories/Repositories.xml");
      }
    }
    files.erase(std::remove(files.begin(), files.end(), ""), files.end());
    return files;
  }

  std::function<ExitCode()> MakeCommand() const {
    const bool usesCatalog = m_settingsUse != SettingsUse::ToShow;
    std::function<ExitCode()> command = [run = m_run, settings = m_settings, output = m_output,
                                         usesCatalog]() mutable {
      try {
        if (usesCatalog) {
          output.failures = ApplyCatalogSettings(settings);
        }
      } catch (const std::length_error& failure) {
        PrintRemark(failure.what());
        return kUsage;
      }
      if (!output.wide) {
        UsePage(PageOfTerminal());
      }
      return run(output);
    };
    if (m_outputFile.empty()) {
      return command;
    }
    return [file = m_outputFile, format = m_output.format, command = std::move(command)] {
      return PrintToFile(file, format, command);
    };
  }

  /// Prints help if the arguments ask for it: its topic follows the word help, or --help ends the
  /// arguments of a command.
  std::optional<ExitCode> AnswerHelp(const std::vector<std::string>& arguments) const {
    const std::string& first = arguments.front();
    const bool isFirst = first == "help" || first == "/help" || IsHelpFlag(first);
    if (isFirst && arguments.size() > 2) {
      PrintRemark(arguments[2] + ": help explains one thing at a time");
      return kUsage;
    }
    if (isFirst) {
      return PrintHelp(arguments.size() > 1 ? arguments[1] : "help");
    }
    const auto second = arguments.begin() + 1;
    const auto end = std::find(second, arguments.end(), "--");
    const auto flag = std::find_if(second, end, IsHelpFlag);
    if (!m_app.get_option_no_throw(first) && flag != end &&
        ExplainFirstWord(m_app, arguments).empty()) {
      if (flag + 1 == arguments.end()) {
        return PrintHelp(first);
      }
      PrintRemark(*(flag + 1) + ": unexpected after " + *flag + FormatHelpHint(first));
      return kUsage;
    }
    return std::nullopt;
  }

  static bool IsHelpFlag(const std::string& argument) {
    return argument == "--help" || argument == "-h" || argument == "-?" || argument == "/?";
  }

  ExitCode PrintHelp(const std::string& word) const {
    // Topics that users ask about, and the command whose help explains each.
    static const std::map<std::string, const char*> kTopics{
        {"baseline", "check"},    {"exit", "help"},    {"exit-codes", "help"}, {"formats", "check"},
        {"gitlab", "check"},      {"ignore", "check"}, {"junit", "check"},     {"mmcat", "help"},
        {"mmcat.toml", "config"}, {"sarif", "check"},  {"settings", "config"}, {"toml", "config"}};
    const auto other = kTopics.find(qm::text::FoldCase(word));
    const std::string topic = other == kTopics.end() ? word : other->second;
    if (topic == "help") {
      WriteHelp(m_app.help());
      return kSuccess;
    }
    if (topic == "findings") {
      WriteHelp(FormatCodes());
      return kSuccess;
    }
    const std::vector<std::string> codes = RuleCodes();
    if (std::find(codes.begin(), codes.end(), topic) != codes.end()) {
      WriteHelp(CLI::detail::find_and_replace(FindRule(topic).help, "**", "") + '\n');
      return kSuccess;
    }
    const std::string wrong = ExplainFirstWord(m_app, {topic});
    if (!wrong.empty() || topic.front() == '-') {
      PrintRemark(wrong.empty() ? topic + ": not a command" : wrong);
      return kUsage;
    }
    WriteHelp(m_app.get_subcommand(topic)->help(m_app.get_name()));
    return kSuccess;
  }

  /// All codes of findings, one line each if the terminal is wide enough.
  static std::string FormatCodes() {
    std::string text = "What mmcat check finds, by code:\n\n";
    for (const std::string& code : RuleCodes()) {
      text += FormatHelpRow(code, FindRule(code).title);
    }
    return text + "\nmmcat help CODE explains one. docs/findings.md has them all.\n";
  }

  static void WriteHelp(const std::string& help) { WriteOutput(WrapLines(help, HelpWidth())); }

  /// Fills in the options that the command line leaves out. Throws SettingsError.
  void FillInFromSettings() {
    if (m_settingsUse != SettingsUse::None) {
      CLI::App& command = *m_app.get_subcommands().front();
      UseSettings(FillInOptions(command, *m_app.get_subcommand("check"), m_settingsChoice));
    }
  }

  static void UseHelpFormat(CLI::App& parser, const char* examples) {
    const auto format = std::make_shared<HelpFormatter>(examples);
    format->label("Positionals", "Arguments");
    parser.formatter(format);
  }

  /// Returns whether the extension stands for JSON and documents of the chosen format are JSON too.
  bool IsJsonToo(OutputFormat extension) const {
    return extension == OutputFormat::JsonDocument &&
           (m_output.format == OutputFormat::Sarif || m_output.format == OutputFormat::GitLab);
  }

  /// Chooses the format by the extension of the output file if the command has it and no format was
  /// chosen. Otherwise prints a hint if the extension stands for another format.
  void ChooseFormatOfFile(bool isFormatTyped) {
    const std::optional<OutputFormat> format = FormatOfFile(m_outputFile);
    if (m_formats.empty() || isFormatTyped || (!format && !HasForeignExtension(m_outputFile))) {
      return;
    }
    const bool isFormat = format && m_formats.count(*format) > 0;
    const std::string writtenAs =
        m_outputFile + ": written as " + NameOf(m_output.format);  // unless it is chosen below
    if (m_isFormatChosen) {
      if (format && *format != m_output.format && !IsJsonToo(*format)) {
        PrintHint(writtenAs + ", as the settings file says" +
                  (isFormat ? std::string("; --format ") + NameOf(*format) + " changes that" : ""));
      }
    } else if (isFormat) {
      m_output.format = *format;
    } else {
      PrintHint(writtenAs + "; this command has no format " +
                (format ? NameOf(*format) : "for this extension"));
    }
  }

  void Add(const Command& command) {
    CLI::App& parser = *m_app.add_subcommand(command.name, command.summary);
    parser.group("Commands");
    UseHelpFormat(parser, command.examples);
    AddOutputOptions(parser, command);
    parser.callback([this, run = command.prepare(parser), &command] {
      m_run = run;
      m_settingsUse = command.settings;
      if (command.output == OutputUse::Report) {
        m_formats = {OutputFormat::PlainText, OutputFormat::JsonDocument};
        m_formats.insert(command.formats.begin(), command.formats.end());
      }
    });
    std::string footer = command.remarks;
    if (command.settings != SettingsUse::None) {
      AddCatalogOptions(parser);
      AddSettingsOptions(parser);
      footer += (footer.empty() ? "" : "\n") +
                std::string(
                    "By default the catalog is that of mmcat.toml, or else of this machine. Any "
                    "of --folder, --gallery, --index and --data replaces it entirely.");
    }
    parser.footer(footer);
  }

  void AddOutputOptions(CLI::App& parser, const Command& command) {
    constexpr char kGroup[] = "Output";
    parser
        .add_option("--output", m_outputFile,
                    "File to print to instead of stdout; its extension may choose the format")
        ->type_name("FILE")
        ->check(CLI::Validator(ValidateFileName, ""))
        ->group(kGroup);
    if (command.output == OutputUse::Verbatim) {
      return;
    }
    const auto chooseJson = [this](std::int64_t given) {
      if (given > 0) {  // a flag may also be given as "--json=false"
        m_output.format = OutputFormat::JsonDocument;
        m_isFormatChosen = true;
      }
    };
    CLI::Option* const json =
        parser.add_flag("-j,--json", chooseJson, "The same as --format json")->group(kGroup);
    std::map<std::string, OutputFormat> formats;
    std::string names;
    const auto addFormat = [&](OutputFormat format) {
      names += (names.empty() ? "" : "|") + std::string(NameOf(format));
      formats[NameOf(format)] = format;
    };
    addFormat(OutputFormat::PlainText);
    addFormat(OutputFormat::JsonDocument);
    std::for_each(command.formats.begin(), command.formats.end(), addFormat);
    parser
        .add_option_function<std::string>(
            "--format",
            [this, formats](const std::string& name) {
              m_output.format = formats.at(name);
              m_isFormatChosen = true;
            },
            "What to print (default: text)")
        ->type_name(names)
        ->excludes(json)
        ->check(CLI::Validator(
            [formats, names](const std::string& name) {
              return formats.count(name) > 0 ? ""
                                             : ExplainChoice(name, CLI::detail::split(names, '|'));
            },
            ""))
        ->group(kGroup);
    parser.add_flag("--no-color", m_output.noColor, "Do not use colours, as with NO_COLOR")
        ->group(kGroup);
    parser.add_flag("--wide", m_output.wide, "Shorten nothing to fit the terminal")->group(kGroup);
    // Accepted by all commands, but not listed where there is neither progress nor a hint.
    const char* const stderrGroup = command.settings == SettingsUse::None ? "" : kGroup;
    parser.add_flag_callback("--no-progress", Progress::Disable, "Do not show progress")
        ->group(stderrGroup);
    const auto quiet = [] {
      Progress::Disable();
      DisableHints();
    };
    parser
        .add_flag_callback("--quiet", quiet, "Print only failures to stderr: no progress, no hints")
        ->group(stderrGroup);
    // Options are processed in the order in which they are added. This one comes before those whose
    // messages contain paths.
    parser
        .add_option_function<std::string>(
            "--paths",
            [](const std::string& spelling) {
              UsePathSpelling(spelling == "windows" ? PathSpelling::Windows : PathSpelling::Native);
            },
            "Spelling of paths in the output (default: native)")
        ->type_name("native|windows")
        ->check(CLI::Validator(ValidatePathSpelling, ""))
        ->group(kGroup);
  }

  void AddCatalogOptions(CLI::App& parser) {
    constexpr char kGroup[] = "Where to look";
    const auto add = [&](const char* option, auto& value, auto* validate, const char* help) {
      return parser.add_option(option, value, help)
          ->type_name("DIR")
          ->check(CLI::Validator(validate, ""))
          ->group(kGroup);
    };
    add("--folder", m_settings.folders, ValidateSearchFolder,
        "Module search folder; can be repeated")
        ->allow_extra_args(false);
    parser.add_flag("--recursive", m_settings.isRecursive, "Also search the folders below these")
        ->group(kGroup);
    add("--gallery", m_settings.galleryRoot, ValidateFolder, "Root of the object gallery");
    add("--index", m_settings.indexFolder, ValidateFolder, "Folder of the index tables");
    add("--data", m_settings.dataFolder, ValidateFolder,
        "Folder that contains Repositories\\Repositories.xml");
  }

  void AddSettingsOptions(CLI::App& parser) {
    constexpr char kGroup[] = "Settings of a team";
    CLI::Option* const file = parser
                                  .add_option("--settings", m_settingsChoice.file,
                                              "Settings file (default: the nearest mmcat.toml, in "
                                              "this folder or one above)")
                                  ->type_name("FILE")
                                  ->check(CLI::Validator(ValidateFileName, ""))
                                  ->group(kGroup);
    parser.add_flag("--no-settings", m_settingsChoice.isOff, "Use no settings file")
        ->excludes(file)
        ->group(kGroup);
  }

  CLI::App m_app;
  CatalogSettings m_settings;
  SettingsChoice m_settingsChoice;
  SettingsUse m_settingsUse = SettingsUse::None;
  OutputOptions m_output;
  std::set<OutputFormat> m_formats;  ///< that the command can print; empty if it has only one
  bool m_isFormatChosen = false;     ///< by an option or a settings file
  std::string m_outputFile;          ///< empty for stdout
  CommandRun m_run;
};

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  return Parser().Read(arguments);
}

}  // namespace mmcat
