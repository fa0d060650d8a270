#include <CLI/CLI.hpp>

#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogFacts.h"
#include "client/catalog/FileNames.h"
#include "client/catalog/ModuleContents.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/commands/ModuleJson.h"
#include "client/commands/ModuleText.h"
#include "common/FolderFiles.h"
#include "common/Path.h"
#include "idl/qmmmupdater2.h"
#include "merge/FileSearch.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

bool IsFile(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesW(qm::text::ToWide(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

/// Returns whether an argument that is not an existing file is meant as one. For a missing file the
/// system's error explains more than "unknown key".
bool LooksLikeFile(const std::string& argument) {
  return argument.find_first_of("\\/") != std::string::npos ||
         qm::common::HasExtension(qm::text::ToWide(argument), L".msm");
}

/// The files that match a path with wildcards in its last part, or the path itself if none match.
/// Windows leaves this expansion to programs.
std::vector<std::string> ExpandWildcards(const std::string& path) {
  if (!qm::merge::HasWildcard(path)) {
    return {path};
  }
  const std::string folder = path.substr(0, path.find_last_of("\\/:") + 1);
  std::vector<std::string> files;
  for (const std::wstring& name : FindFileNames(qm::text::ToWide(path))) {
    files.push_back(folder + qm::text::ToUtf8(name));
  }
  return files.empty() ? std::vector<std::string>{path} : files;
}

class ModuleWriter {
 public:
  explicit ModuleWriter(const OutputOptions& output) : m_report("show", output) {}

  void ShowFile(const std::string& file) {
    if (!m_fileModule) {
      m_fileModule = CreateObject<IMergeModule2>(CLSID_MergeModule2, "QmMMUpdater2.dll");
    }
    try {
      ThrowIfFailed(m_fileModule->Open(
          MakeArgument(qm::common::ResolveFullPath(qm::text::ToWide(file))).Get()));
      ShowModule(*m_fileModule, file);
    } catch (const ServerFailure& failure) {
      m_report.AddFailure(file, "", failure.HResult(), failure.what());
    }
  }

  void ShowKey(const std::string& key) {
    const Catalog catalog;
    bool isKnown = false;
    ForEachItem<IMergeModule>(*catalog.FindModules(key, ""), [&](IMergeModule& module) {
      isKnown = true;
      qm::common::ComPtr<IMergeModule2> newerModule;
      ThrowIfFailed(qm::common::ComPtr<IMergeModule>(&module).QueryInterface(newerModule.Put()));
      ShowModule(*newerModule, ReadText(module, &IMergeModule::get_Path));
    });
    if (!isKnown) {
      PrintUnknownKey(catalog.Keys(), key);
      m_outcome = kNothingMatched;
    }
  }

  ExitCode Finish() {
    m_report.Document()["modules"] = std::move(m_modules);
    return m_report.Finish(m_outcome);
  }

 private:
  void ShowModule(IMergeModule2& module, const std::string& file) {
    const ModuleContents description = ReadModuleContents(module);
    if (m_report.IsJson()) {
      m_modules.push_back(MakeModuleJson(description));
    } else {
      // Separate modules by a blank line.
      m_report.Print((m_isFirst ? "" : "\n") + FormatModule(description));
      m_isFirst = false;
    }
    for (const PartFailure& failed : description.failures) {
      m_report.AddFailure(file, failed.part, failed.failure.HResult(), failed.failure.what());
    }
  }

  Report m_report;
  qm::common::ComPtr<IMergeModule2> m_fileModule;
  Json m_modules = Json::array();
  bool m_isFirst = true;
  ExitCode m_outcome = kSuccess;
};

struct Options {
  std::vector<std::string> subjects;  ///< files, possibly with wildcards, and keys
};

void AddArguments(CLI::App& parser, Options& options) {
  parser
      .add_option("FILE", options.subjects,
                  "Module files, or modules in the catalog by ID or ID:LANGUAGE")
      ->required();
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  ModuleWriter writer(output);
  for (const std::string& argument : options.subjects) {
    for (const std::string& subject : ExpandWildcards(argument)) {
      if (IsFile(subject) || LooksLikeFile(subject)) {
        writer.ShowFile(subject);
      } else {
        writer.ShowKey(subject);
      }
    }
  }
  return writer.Finish();
}

}  // namespace

extern const Command kShowCommand = {
    "show",
    "Show the identity, summary and tables of modules",
    "  mmcat show C:\\Modules\\*.msm\n"
    "  mmcat show Charmap.3128F3C8:1033       a module in the catalog\n",
    PrepareCommand<Options, AddArguments, Run>,
};

}  // namespace mmcat
