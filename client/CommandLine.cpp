#include "client/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "client/Help.h"
#include "client/catalog/CatalogSettings.h"
#include "client/commands/CheckCommand.h"
#include "client/commands/DepsCommand.h"
#include "client/commands/ExclusionsCommand.h"
#include "client/commands/FilesCommand.h"
#include "client/commands/GalleryCommand.h"
#include "client/commands/ListCommands.h"
#include "client/commands/NameCommand.h"
#include "client/commands/ShowCommand.h"
#include "client/commands/SourcesCommand.h"
#include "client/commands/WhichCommand.h"
#include "client/terminal/Console.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Report.h"
#include "merge/JoinTexts.h"

namespace {

/// What the options and arguments of the commands hold.
struct Values {
  CatalogSettings settings;
  std::vector<std::string> subjects;  ///< the arguments of a command that takes several
  std::string subject;                ///< the argument of one that takes one
  std::string version;
  DepsView depsView = DepsView::Order;
  OutputOptions output;
};

constexpr char kKey[] = "Module ID, or ID:LANGUAGE for one language";

class Parser {
 public:
  Parser() : m_app("Shows the catalog of merge modules (.msm)", "mmcat") {
    m_app.formatter(std::make_shared<HelpFormatter>());
    // "/home/x.msm" is a path where paths look so, never an option.
    m_app.allow_windows_style_options(false);
    m_app.require_subcommand(1);
    m_app.set_version_flag("--version", "mmcat " MMCAT_VERSION, "Print the version and exit");
    m_app.footer(
        "Exit codes: 0 success, 1 findings of deps or check, 2 wrong usage, 3 nothing matched,\n"
        "4 some module could not be read, 5 the server failed, 6 the output cannot be written.");
    AddCommandsOfLists();
    AddCommandsOfModules();
  }

  Command Read(std::vector<std::string> arguments) {
    if (!arguments.empty() && IsUnknownCommand(arguments.front())) {
      return kUsage;
    }
    try {
      std::reverse(arguments.begin(), arguments.end());  // the order that the parser takes
      m_app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
      std::ostringstream output;
      std::ostringstream remarks;
      const int exitCode = m_app.exit(error, output, remarks);
      WriteOutput(output.str());
      WriteError(remarks.str());
      return exitCode == 0 ? kSuccess : kUsage;
    }
    return [run = m_run, values = m_values] {
      Apply(values.settings);
      return run(values);
    };
  }

 private:
  using Run = ExitCode (*)(const Values&);

  /// Whether a first argument is meant for a command and is none, about which the parser would only
  /// say that there is none.
  bool IsUnknownCommand(const std::string& argument) const {
    std::vector<std::string> names;
    for (const CLI::App* command : m_app.get_subcommands(nullptr)) {
      names.push_back(command->get_name());
    }
    if (argument.empty() || argument.front() == '-' ||
        std::find(names.begin(), names.end(), argument) != names.end()) {
      return false;
    }
    const std::vector<std::string> nearest = NearestNames(argument, names);
    PrintRemark(
        argument + ": there is no such command" +
        (nearest.empty() ? "; --help lists them" : "; did you mean " + JoinTexts(nearest, " or ")));
    return true;
  }

  void AddCommandsOfLists() {
    AddOfCatalog("list", "List all modules of the catalog",
                 [](const Values& values) { return List(values.output); });
    AddOfCatalog("files", "List the files of all modules", [](const Values& values) {
      return Files(values.subject, values.output);
    }).add_option("PATTERN", m_values.subject, "Only files of such names: * and ? stand for any");
    AddOfCatalog("exclusions", "List what the modules exclude, and which modules that hits",
                 [](const Values& values) { return Exclusions(values.output); });
    AddOfCatalog("sources", "List the module search folders",
                 [](const Values& values) { return Sources(values.output); });
    AddOfCatalog("gallery", "List the descriptions of the object gallery",
                 [](const Values& values) { return Gallery(values.output); });
    AddOfCatalog("check", "Tell what is wrong in the catalog, or in a set of modules",
                 [](const Values& values) { return CheckCatalog(values.subjects, values.output); })
        .add_option("KEY", m_values.subjects,
                    "Modules that are to be merged, ID or ID:LANGUAGE; all when there are none");
  }

  void AddCommandsOfModules() {
    AddOfCatalog("show", "Show modules: identity, summary, tables",
                 [](const Values& values) { return Show(values.subjects, values.output); })
        .add_option("FILE", m_values.subjects,
                    "Module files, or modules of the catalog: ID or ID:LANGUAGE")
        ->required();
    CLI::App& find = AddOfCatalog("find", "List the modules of an ID", [](const Values& values) {
      return Find(values.subject, values.version, values.output);
    });
    AddSubject(find, "KEY", kKey);
    find.add_option("--version", m_values.version, "Only this version");
    AddSubject(
        AddOfCatalog("which", "Tell which modules deliver a file",
                     [](const Values& values) { return Which(values.subject, values.output); }),
        "FILE", "File name, in which * and ? stand for any");
    AddSubject(
        AddOfCatalog("name", "Tell the display name of a module",
                     [](const Values& values) { return Name(values.subject, values.output); }),
        "KEY", "Module key, ID:LANGUAGE");
    CLI::App& deps = AddOfCatalog(
        "deps", "Tell what a module needs, in the order of merging",
        [](const Values& values) { return Deps(values.subject, values.depsView, values.output); });
    AddSubject(deps, "KEY", kKey);
    deps.add_flag(
        "--tree", [this](std::int64_t given) { SetView(given, DepsView::Tree); },
        "Each module above what it needs");
    deps.add_flag(
            "--reverse", [this](std::int64_t given) { SetView(given, DepsView::Reverse); },
            "The modules that need this one instead")
        ->excludes("--tree");
  }

  CLI::App& AddOfCatalog(const char* name, const char* description, Run run) {
    CLI::App& command = *m_app.add_subcommand(name, description);
    command.callback([this, run] { m_run = run; });
    command.add_flag("--json", m_values.output.json, "Print one JSON document");
    command.add_flag("--no-color", m_values.output.noColor, "No colours, as with NO_COLOR");
    CatalogSettings& settings = m_values.settings;
    const auto add = [&command](const char* option, auto& value, const char* what) {
      return command.add_option(option, value, what)->type_name("DIR")->group("Where to look");
    };
    add("--folder", settings.folders, "Module search folder; may be given several times")
        ->allow_extra_args(false)
        ->check(CLI::Validator(WhyNoSearchFolder, ""));
    add("--gallery", settings.galleryRoot, "Root of the object gallery");
    add("--index", settings.indexFolder, "Folder of the index tables");
    add("--data", settings.dataFolder, "Folder that holds Repositories\\Repositories.xml");
    command.footer(
        "Without these options the catalog is that of this machine; with one of them it is\n"
        "nothing but what they say.");
    return command;
  }

  /// A flag may also be given as "--tree=false".
  void SetView(std::int64_t given, DepsView view) {
    if (given > 0) {
      m_values.depsView = view;
    }
  }

  void AddSubject(CLI::App& command, const char* name, const char* description) {
    command.add_option(name, m_values.subject, description)->required();
  }

  CLI::App m_app;
  Values m_values;
  Run m_run = nullptr;
};

}  // namespace

Command ReadCommandLine(std::vector<std::string> arguments) {
  return Parser().Read(std::move(arguments));
}
