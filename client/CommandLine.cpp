#include "client/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>

#include "client/Completion.h"
#include "client/Help.h"
#include "client/ResponseFile.h"
#include "client/SettingsOptions.h"
#include "client/catalog/CatalogSettings.h"
#include "client/catalog/PathSpelling.h"
#include "client/commands/Commands.h"
#include "client/terminal/Console.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Page.h"
#include "client/terminal/Progress.h"
#include "client/terminal/Report.h"
#include "client/terminal/TextWidth.h"

namespace mmcat {

namespace {

constexpr char kExamples[] =
    "  mmcat list --folder samples/modules    the modules in a folder\n"
    "  mmcat check --folder samples/modules   what is wrong with them\n"
    "  mmcat which LarkfieldZip32.dll         which modules deliver a file\n"
    "  mmcat show TinyZip                     what a module contains\n"
    "  mmcat deps PlotterSuite                what a module needs, in merge order\n"
    "  mmcat list --json                      output for other programs\n";

constexpr size_t kHelpWidth = 79;

std::string ValidatePathSpelling(const std::string& spelling) {
  return spelling == "native" || spelling == "windows" ? "" : spelling + ": not native or windows";
}

std::string ValidateSettingsName(const std::string& file) {
  return file.empty() ? "the name is empty" : "";  // probably an unset shell variable
}

/// Parses the shared options and those of the command that was given.
class Parser {
 public:
  Parser() : m_app("Lists, searches and checks the merge modules (.msm) of a catalog", "mmcat") {
    m_app.set_help_flag("-h,--help", "Print this help and exit; also: mmcat help COMMAND");
    m_app.formatter(std::make_shared<HelpFormatter>(kExamples));
    // Never take a path such as "/home/x.msm" for an option.
    m_app.allow_windows_style_options(false);
    m_app.require_subcommand(1);
    m_app.set_version_flag("-V,--version", "mmcat " MMCAT_VERSION, "Print the version and exit");
    m_app.footer(
        "Exit codes: 0 success, 1 findings (deps, check, selftest), 2 wrong usage,\n"
        "3 nothing matched or no modules, 4 a module or folder could not be read,\n"
        "5 the server failed, 6 the output could not be written.");
    for (const Command* command : Commands()) {
      Add(*command);
    }
  }

  CommandLine Read(std::vector<std::string> arguments) {
    try {
      arguments = ExpandResponseFiles(arguments);
    } catch (const std::runtime_error& failure) {
      PrintRemark(failure.what());
      return kUsage;
    }
    if (arguments.empty()) {
      WriteOutput(WrapLines(m_app.help(), kHelpWidth));
      return kUsage;
    }
    if (arguments.front() == "__complete") {
      arguments.erase(arguments.begin());
      return Complete(m_app, arguments);
    }
    if (arguments.front() == "help") {
      arguments.erase(arguments.begin());
      arguments.resize(std::min<size_t>(arguments.size(), 1));
      arguments.emplace_back("--help");
    }
    if (IsUnknownCommand(arguments.front())) {
      return kUsage;
    }
    const std::vector<std::string> typed = arguments;
    try {
      std::reverse(arguments.begin(), arguments.end());  // the order that the library expects
      m_app.parse(std::move(arguments));
    } catch (const CLI::ExtrasError&) {
      PrintUnexpected(typed);
      return kUsage;
    } catch (const CLI::ParseError& error) {
      if (error.get_exit_code() != 0) {
        PrintRemark(error.what() + FormatHelpHint(typed.front()));
        return kUsage;
      }
      std::ostringstream output;
      m_app.exit(error, output, output);
      WriteOutput(WrapLines(output.str(), kHelpWidth));
      return kSuccess;
    }
    const bool usesCatalog = m_settingsUse != SettingsUse::ToShow;
    try {
      FillInFromSettings();
    } catch (const SettingsError& failure) {
      PrintRemark(failure.what());
      return kUsage;
    }
    if (m_settings.isRecursive && m_settings.folders.empty()) {
      PrintRemark("--recursive requires --folder" + FormatHelpHint(typed.front()));
      return kUsage;
    }
    return [run = m_run, settings = m_settings, output = m_output, outputFile = m_outputFile,
            usesCatalog]() mutable {
      if (!outputFile.empty()) {
        if (const int error = RedirectOutput(ToSystemPath(outputFile).c_str())) {
          PrintRemark(outputFile + ": " + std::strerror(error));
          return kOutputFailed;
        }
      }
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
  }

 private:
  /// Reports a first argument that looks like a command and is not one; the library would only
  /// report that the command is missing.
  static bool IsUnknownCommand(const std::string& argument) {
    std::vector<std::string> names;
    for (const Command* command : Commands()) {
      names.emplace_back(command->name);
    }
    if (argument.empty() || argument.front() == '-' ||
        std::find(names.begin(), names.end(), argument) != names.end()) {
      return false;
    }
    const std::vector<std::string> nearest = FindNearestNames(argument, names);
    PrintRemark(argument + ": unknown command" +
                (nearest.empty() ? "; see mmcat help" : FormatSuggestion(nearest)));
    return true;
  }

  /// The end of a remark on wrong usage.
  static std::string FormatHelpHint(const std::string& command) {
    const bool isCommand = command.front() != '-';
    return isCommand ? "; see mmcat help " + command : "; see mmcat help";
  }

  /// Reports the arguments that were not expected, as they were typed and in their order.
  void PrintUnexpected(const std::vector<std::string>& typed) const {
    std::vector<std::string> unexpected = m_app.remaining(true);
    std::vector<std::string> options;
    for (const CLI::App* parser : m_app.get_subcommands()) {
      for (const CLI::Option* option : parser->get_options()) {
        for (const std::string& name : option->get_lnames()) {
          options.push_back("--" + name);
        }
      }
    }
    for (const std::string& argument : typed) {
      const auto found = std::find(unexpected.begin(), unexpected.end(), argument);
      if (found == unexpected.end()) {
        continue;
      }
      unexpected.erase(found);
      const std::string name = argument.substr(0, argument.find('='));
      const std::vector<std::string> nearest =
          name.front() == '-' ? FindNearestNames(name, options) : std::vector<std::string>();
      PrintRemark(name + (name.front() == '-' ? ": unknown option" : ": unexpected argument") +
                  (nearest.empty() ? FormatHelpHint(typed.front()) : FormatSuggestion(nearest)));
    }
  }

  /// Fills in the options that the command line leaves out. Throws SettingsError.
  void FillInFromSettings() {
    if (m_settingsUse != SettingsUse::None) {
      CLI::App& command = *m_app.get_subcommands().front();
      UseSettings(FillInOptions(command, *m_app.get_subcommand("check"), m_settingsChoice));
    }
  }

  void Add(const Command& command) {
    CLI::App& parser = *m_app.add_subcommand(command.name, command.summary);
    parser.formatter(std::make_shared<HelpFormatter>(command.examples));
    AddOutputOptions(parser, command.formats);
    parser.callback([this, run = command.prepare(parser), use = command.settings] {
      m_run = run;
      m_settingsUse = use;
    });
    AddCatalogOptions(parser, command.settings);
    if (command.settings != SettingsUse::None) {
      AddSettingsOptions(parser);
    }
  }

  void AddOutputOptions(CLI::App& parser, const std::vector<OutputFormat>& moreFormats) {
    const auto chooseJson = [this](std::int64_t given) {
      if (given > 0) {  // a flag may also be given as "--json=false"
        m_output.format = OutputFormat::JsonDocument;
      }
    };
    CLI::Option* const json = parser.add_flag("-j,--json", chooseJson, "The same as --format json");
    std::map<std::string, OutputFormat> formats;
    std::string names;
    const auto addFormat = [&](OutputFormat format) {
      names += (names.empty() ? "" : "|") + std::string(NameOf(format));
      formats[NameOf(format)] = format;
    };
    addFormat(OutputFormat::PlainText);
    addFormat(OutputFormat::JsonDocument);
    std::for_each(moreFormats.begin(), moreFormats.end(), addFormat);
    parser
        .add_option_function<std::string>(
            "--format",
            [this, formats](const std::string& name) { m_output.format = formats.at(name); },
            "What to print (default: text)")
        ->type_name(names)
        ->excludes(json)
        ->check(CLI::Validator(
            [formats, names](const std::string& name) {
              return formats.count(name) > 0 ? "" : name + ": not one of " + names;
            },
            ""));
    parser.add_option("--output", m_outputFile, "File to print to instead of stdout")
        ->type_name("FILE");
    parser.add_flag("--no-color", m_output.noColor, "Do not use colours, as with NO_COLOR");
    parser.add_flag("--wide", m_output.wide, "Shorten nothing to fit the terminal");
    parser.add_flag_callback("--no-progress", Progress::Disable, "Do not show progress");
    const auto quiet = [] {
      Progress::Disable();
      DisableHints();
    };
    parser.add_flag_callback("--quiet", quiet,
                             "Print only failures to stderr: no progress, no hints");
    // Options are handled in the order in which they are added, this one before any with a path.
    parser
        .add_option_function<std::string>(
            "--paths",
            [](const std::string& spelling) {
              UsePathSpelling(spelling == "windows" ? PathSpelling::Windows : PathSpelling::Native);
            },
            "Spelling of paths in the output (default: native)")
        ->type_name("native|windows")
        ->check(CLI::Validator(ValidatePathSpelling, ""));
  }

  void AddCatalogOptions(CLI::App& parser, SettingsUse use) {
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
    parser.footer(std::string("By default the catalog is that of ") +
                  (use == SettingsUse::None ? "" : "mmcat.toml, or else of ") +
                  "this machine. Any of\n"
                  "--folder, --gallery, --index and --data replaces it entirely.");
  }

  void AddSettingsOptions(CLI::App& parser) {
    constexpr char kGroup[] = "Settings of a team";
    CLI::Option* const file = parser
                                  .add_option("--settings", m_settingsChoice.file,
                                              "Settings file (default: the nearest mmcat.toml, in "
                                              "this folder or one above)")
                                  ->type_name("FILE")
                                  ->check(CLI::Validator(ValidateSettingsName, ""))
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
  std::string m_outputFile;  ///< empty for stdout
  CommandRun m_run;
};

}  // namespace

CommandLine ParseCommandLine(std::vector<std::string> arguments) {
  return Parser().Read(std::move(arguments));
}

}  // namespace mmcat
