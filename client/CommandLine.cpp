#include "client/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "client/CatalogSettings.h"
#include "client/CheckCommand.h"
#include "client/DepsCommand.h"
#include "client/GalleryCommand.h"
#include "client/ListCommands.h"
#include "client/LookupCommands.h"
#include "client/ShowCommand.h"
#include "client/SourcesCommand.h"

namespace {

/// What the options and arguments of the commands hold.
struct Values {
  CatalogSettings settings;
  std::vector<std::string> files;
  std::string subject;  ///< the one argument of a command
  std::string version;
  DepsView depsView = DepsView::Order;
  bool json = false;
};

class Parser {
 public:
  Parser() : m_app("Shows the catalog of merge modules (.msm).", "mmcat") {
    // "/home/x.msm" is a path where paths look so, never an option.
    m_app.allow_windows_style_options(false);
    m_app.require_subcommand(1);
    m_app.footer(
        "Exit codes: 0 success, 1 findings of deps or check, 2 wrong usage, 3 nothing matched, 4 "
        "some module could not be read, "
        "5 the server failed, 6 the output cannot be written.");

    Add("show", "Show module files: identity, summary, tables",
        [](const Values& values) { return Show(values.files, values.json); })
        .add_option("FILE", m_values.files, "Module files")
        ->required();
    AddOfCatalog("list", "List all modules of the catalog",
                 [](const Values& values) { return List(values.json); });
    CLI::App& find = AddOfCatalog("find", "List the modules of an ID", [](const Values& values) {
      return Find(values.subject, values.version, values.json);
    });
    AddSubject(find, "KEY", "Module ID, or ID:LANGUAGE for one language");
    find.add_option("--version", m_values.version, "Only this version");
    AddSubject(
        AddOfCatalog("which", "Tell which module delivers a file",
                     [](const Values& values) { return Which(values.subject, values.json); }),
        "FILE", "File name");
    AddSubject(AddOfCatalog("name", "Tell the display name of a module",
                            [](const Values& values) { return Name(values.subject, values.json); }),
               "KEY", "Module key, ID:LANGUAGE");
    CLI::App& deps = AddOfCatalog(
        "deps", "Tell what a module needs, in the order of merging",
        [](const Values& values) { return Deps(values.subject, values.depsView, values.json); });
    AddSubject(deps, "KEY", "Module ID, or ID:LANGUAGE for one language");
    deps.add_flag(
        "--tree", [this](std::int64_t) { m_values.depsView = DepsView::Tree; },
        "Each module above what it needs");
    deps.add_flag(
            "--reverse", [this](std::int64_t) { m_values.depsView = DepsView::Reverse; },
            "The modules that need this one instead")
        ->excludes("--tree");
    AddOfCatalog("check", "Tell what is wrong in the catalog, or in a set of modules",
                 [](const Values& values) { return CheckCatalog(values.files, values.json); })
        .add_option("KEY", m_values.files,
                    "Modules that are to be merged, ID or ID:LANGUAGE; all when there are none");
    AddOfCatalog("sources", "List the module search folders",
                 [](const Values& values) { return Sources(values.json); });
    AddOfCatalog("gallery", "List the descriptions of the object gallery",
                 [](const Values& values) { return Gallery(values.json); });
  }

  Command Read(std::vector<std::string> arguments) {
    try {
      std::reverse(arguments.begin(), arguments.end());  // the order that the parser takes
      m_app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
      return m_app.exit(error) == 0 ? kSuccess : kUsage;
    }
    return [run = m_run, values = m_values] {
      Apply(values.settings);
      return run(values);
    };
  }

 private:
  using Run = ExitCode (*)(const Values&);

  CLI::App& Add(const char* name, const char* description, Run run) {
    CLI::App& command = *m_app.add_subcommand(name, description);
    command.add_flag("--json", m_values.json, "Print one JSON document");
    command.callback([this, run] { m_run = run; });
    return command;
  }

  CLI::App& AddOfCatalog(const char* name, const char* description, Run run) {
    CLI::App& command = Add(name, description, run);
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
        "Without these options the catalog is that of this machine; with one of them it is nothing "
        "but what they say.");
    return command;
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
