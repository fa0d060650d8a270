#include <CLI/CLI.hpp>

#include "client/catalog/Catalog.h"
#include "client/catalog/FileNames.h"
#include "client/catalog/ModuleContents.h"
#include "client/catalog/ModuleFile.h"
#include "client/catalog/Properties.h"
#include "client/catalog/UserPath.h"
#include "client/commands/Advice.h"
#include "client/commands/Commands.h"
#include "client/commands/ModuleJson.h"
#include "client/commands/ModuleText.h"
#include "client/commands/UnknownKey.h"
#include "client/terminal/FailureText.h"
#include "common/FolderFiles.h"
#include "idl/qmmmupdater2.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

/// Returns whether an argument that is not an existing file is meant as one. For a missing file the
/// system's error explains more than "unknown key".
bool LooksLikeFile(const std::string& argument) {
  return argument.find_first_of("\\/") != std::string::npos ||
         qm::common::HasExtension(qm::text::ToWide(argument), L".msm");
}

/// The files that match a path with wildcards in its last part, or the path itself if none match.
/// Windows leaves this expansion to programs.
std::vector<std::string> ExpandWildcards(const std::string& path) {
  if (path.find_first_of("*?") == std::string::npos) {
    return {path};
  }
  const std::string folder = path.substr(0, path.find_last_of("\\/:") + 1);
  std::vector<std::string> files;
  for (const std::wstring& name : FindFileNames(ToSystemPath(path))) {
    files.push_back(folder + qm::text::ToUtf8(name));
  }
  return files.empty() ? std::vector<std::string>{path} : files;
}

enum class ShowDepth { Summary, Everything };

/// Collects the modules to show, from files and from the catalog.
class ModuleCollector {
 public:
  explicit ModuleCollector(Report& report) : m_report(report) {}

  void AddFile(const std::string& file) {
    try {
      m_modules.emplace_back(OpenModuleFile(file).Get());
    } catch (const ServerFailure& failure) {
      m_report.AddFailure({file, "", failure.HResult(), failure.what()});
      const std::string advice = IsFile(file) ? AdviseOnFile(file, "show MODULE") : "";
      if (!advice.empty() && ExplainFailure(failure.HResult()) != advice) {
        PrintRemark(file + ": " + advice);
      }
    }
  }

  /// Adds the modules that a word names. Prints a remark and returns false if there are none.
  bool AddNamed(const std::string& word) {
    const size_t before = m_modules.size();
    const Catalog catalog;
    ForEachItem<IMergeModule>(*catalog.FindNamedModules(word, ""),
                              [&](IMergeModule& module) { m_modules.emplace_back(&module); });
    if (m_modules.size() == before && LooksLikeFile(word) && !IsFolder(word)) {
      AddFile(word);
      return true;
    }
    if (m_modules.size() == before) {
      PrintUnknownKey(catalog.Names(), word, "show MODULE");
      return false;
    }
    return true;
  }

  ModuleObjects Take() { return std::move(m_modules); }

 private:
  Report& m_report;
  ModuleObjects m_modules;
};

void ShowModules(ModuleObjects modules, ShowDepth depth, Report& report) {
  const ModuleSet set(std::move(modules));
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  Json list = Json::array();
  for (size_t position = 0; position < set.Modules().size(); ++position) {
    const ModuleContents contents = ReadModuleContents(set, position);
    if (report.IsJson()) {
      list.push_back(MakeModuleJson(contents));
    } else {
      // Separate modules by a blank line.
      report.Print((position == 0 ? "" : "\n") + (depth == ShowDepth::Everything
                                                      ? FormatModule(contents)
                                                      : FormatModuleSummary(contents)));
    }
    for (const PartFailure& failed : contents.failures) {
      report.AddFailure(
          {contents.path, failed.part, failed.failure.HResult(), failed.failure.what()});
    }
  }
  report.Document()["modules"] = std::move(list);
}

struct Options {
  std::vector<std::string> subjects;  ///< files, possibly with wildcards, and keys
  bool full = false;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser
      .add_option("MODULE", options.subjects, "Module files, or modules of the catalog by any name")
      ->required();
  parser.add_flag("--full", options.full, "Everything: all files, components, actions and tables");
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("show", output, 2);
  ModuleCollector modules(report);
  ExitCode outcome = kSuccess;
  for (const std::string& argument : options.subjects) {
    for (const std::string& subject : ExpandWildcards(argument)) {
      if (IsFile(subject)) {
        modules.AddFile(subject);
      } else if (!modules.AddNamed(subject)) {
        outcome = kNothingMatched;
      }
    }
  }
  ShowModules(modules.Take(), options.full ? ShowDepth::Everything : ShowDepth::Summary, report);
  return report.Finish(outcome);
}

}  // namespace

extern const Command kShowCommand = {
    "show",
    "Show what modules contain",
    "  mmcat show CharmapCore:1033            a module of the catalog\n"
    "  mmcat show samples/modules/*.msm       files\n"
    "  mmcat show TinyZip --full              everything about it\n",
    PrepareCommand<Options, AddArguments, Run>,
};

}  // namespace mmcat
