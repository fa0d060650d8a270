#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>

#include "client/catalog/Catalog.h"
#include "client/catalog/FileNames.h"
#include "client/catalog/ModuleContents.h"
#include "client/catalog/ModuleFile.h"
#include "client/catalog/Properties.h"
#include "client/catalog/UserPath.h"
#include "client/catalog/Wildcards.h"
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

/// The module files that match a path with wildcards in its last part. Windows leaves this
/// expansion to programs.
std::vector<std::string> FindModuleFiles(const std::string& pattern) {
  const std::string folder = pattern.substr(0, pattern.find_last_of("\\/:") + 1);
  std::vector<std::string> files;
  for (const std::wstring& name : FindFileNames(ToSystemPath(pattern))) {
    if (qm::common::HasExtension(name, L".msm")) {
      files.push_back(folder + qm::text::ToUtf8(name));
    }
  }
  return files;
}

enum class ShowDepth { Summary, Everything };

/// Collects the modules to show, from files and from the catalog.
class ModuleCollector {
 public:
  explicit ModuleCollector(Report& report) : m_report(report) {}

  void AddFile(const std::string& file) {
    try {
      m_modules.emplace_back(OpenModuleFile(file).Get());
    } catch (const ServerUnavailable&) {
      throw;  // no other file can be read either
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
    const Catalog catalog;
    if (AddFound(catalog, word)) {
      return true;
    }
    if (LooksLikeFile(word) && !IsFolder(word)) {
      AddFile(word);
      return true;
    }
    PrintUnknownKey(catalog.Names(), word, "show MODULE");
    return false;
  }

  /// The same for a pattern. If it looks like a path, it means module files, or modules of the
  /// catalog if no file matches; otherwise it is the other way round.
  bool AddMatching(const std::string& pattern) {
    const std::vector<std::string> files = FindModuleFiles(pattern);
    const bool prefersFiles = LooksLikeFile(pattern) && !files.empty();
    if (!prefersFiles) {
      const Catalog catalog;
      if (AddFound(catalog, pattern)) {
        return true;
      }
      if (files.empty()) {
        PrintUnknownKey(catalog.Names(), pattern, "show MODULE");
        return false;
      }
    }
    for (const std::string& file : files) {
      AddFile(file);
    }
    return true;
  }

  ModuleObjects Take() { return std::move(m_modules); }

 private:
  /// Adds the modules of the catalog that a word or pattern means. Returns false if there are none.
  bool AddFound(const Catalog& catalog, const std::string& word) {
    const size_t before = m_modules.size();
    ForEachItem<IMergeModule>(*catalog.FindNamedModules(word, ""),
                              [&](IMergeModule& module) { m_modules.emplace_back(&module); });
    return m_modules.size() > before;
  }

  Report& m_report;
  ModuleObjects m_modules;
};

void ShowModules(ModuleObjects modules, ShowDepth depth, Report& report) {
  const ModuleSet set(std::move(modules));
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  std::set<std::string> unreadable;
  for (const FileFailure& failure : report.Failures()) {
    unreadable.insert(failure.file);
  }
  const auto isUnreadable = [&](const ModuleFacts& module) {
    return module.moduleId.empty() && unreadable.count(module.path) > 0;
  };
  Json list = Json::array();
  bool isFirst = true;
  for (size_t position = 0; position < set.Modules().size(); ++position) {
    if (isUnreadable(set.Modules()[position])) {
      continue;
    }
    const ModuleContents contents = ReadModuleContents(set, position);
    if (report.IsJson()) {
      list.push_back(MakeModuleJson(contents));
    } else {
      // Separate modules by a blank line.
      report.Print((isFirst ? "" : "\n") + (depth == ShowDepth::Everything
                                                ? FormatModule(contents)
                                                : FormatModuleSummary(contents)));
    }
    isFirst = false;
    for (const PartFailure& failed : contents.failures) {
      report.AddFailure(
          {contents.path, failed.part, failed.failure.HResult(), failed.failure.what()});
    }
  }
  report.Document()["modules"] = std::move(list);
}

struct Options {
  std::vector<std::string> subjects;  ///< files, names of modules, and patterns of both
  bool full = false;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser
      .add_option("MODULE", options.subjects,
                  "Module files, or modules of the catalog by any name; with * and ?, the "
                  "modules that match, else files")
      ->required();
  parser.add_flag("--full", options.full, "Everything: all files, components, actions and tables");
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("show", output, 2);
  ModuleCollector modules(report);
  ExitCode outcome = kSuccess;
  for (const std::string& subject : options.subjects) {
    if (HasWildcard(subject)) {
      outcome = modules.AddMatching(subject) ? outcome : kNothingMatched;
    } else if (IsFile(subject)) {
      modules.AddFile(subject);
    } else if (!modules.AddNamed(subject)) {
      outcome = kNothingMatched;
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
