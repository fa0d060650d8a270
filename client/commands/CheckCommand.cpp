#include <CLI/CLI.hpp>
#include <map>
#include <set>

#include "client/catalog/CatalogFacts.h"
#include "client/catalog/GalleryFiles.h"
#include "client/catalog/IndexFiles.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/terminal/Style.h"
#include "client/terminal/TextTable.h"
#include "msidb/TargetDirectories.h"
#include "text/Fold.h"
#include "text/Utf.h"
#include "traits/TargetPath.h"

using qm::text::FoldCase;
using qm::text::ToUtf8;
using qm::text::ToWide;

namespace {

/// Target paths of directories. All directories of a module are resolved together when the first of
/// them is asked for.
class TargetPaths {
 public:
  TargetPaths(const CatalogFacts& catalog, Report& report) : m_catalog(catalog), m_report(report) {}

  std::string Find(size_t module, const std::string& directory) {
    const auto known = m_directories.find(module);
    const msidb::TargetDirectories& directories =
        known == m_directories.end() ? Resolve(module) : known->second;
    const auto found = directories.find(ToWide(directory));
    return found == directories.end() ? "" : FolderText(found->second);
  }

 private:
  /// The path with its root, which distinguishes folders of the same name.
  static std::string FolderText(const msidb::TargetDirectory& directory) {
    const std::string path = ToUtf8(directory.path);
    const bool namesRoot = !path.empty() && path.front() == '[';
    return namesRoot || directory.root.empty() ? path : '[' + ToUtf8(directory.root) + ']' + path;
  }

  const msidb::TargetDirectories& Resolve(size_t module) {
    msidb::TargetDirectories& directories = m_directories[module];
    for (const DeliveredFile& file : m_catalog.details[module].files) {
      directories.try_emplace(ToWide(file.directory));
    }
    const std::string& path = m_catalog.modules[module].path;
    const HRESULT hr =
        msidb::ResolveModuleDirectories(ToWide(path), TargetPathOptions(), directories);
    if (FAILED(hr)) {
      m_report.AddFailure(path, "target paths", hr, ServerFailure::Capture(hr).what());
    }
    return directories;
  }

  const CatalogFacts& m_catalog;
  Report& m_report;
  std::map<size_t, msidb::TargetDirectories> m_directories;
};

/// Notes which modules need a download. Only modules that the gallery describes are asked: no other
/// module can need one.
void ReadDownloads(CatalogFacts& catalog, Report& report) {
  std::set<std::string> described;
  for (const GalleryFile& file : ReadGalleryFiles()) {
    described.insert(FoldCase(file.packageCode));
  }
  for (size_t position = 0; position < catalog.modules.size(); ++position) {
    const ListedModule& module = catalog.modules[position];
    if (described.count(FoldCase(module.packageCode)) == 0) {
      continue;
    }
    try {
      catalog.details[position].needsDownload =
          Flag<IMergeModule2>(*module.object.Get(), &IMergeModule2::get_NeedsDownload);
    } catch (const ServerFailure& failure) {
      report.AddFailure(module.path, "gallery", failure.Result(), failure.what());
    }
  }
}

std::vector<size_t> AllPositions(size_t count) {
  std::vector<size_t> positions(count);
  for (size_t position = 0; position < count; ++position) {
    positions[position] = position;
  }
  return positions;
}

/// The modules of the keys and everything they need. If a key matches no module, prints a remark
/// and returns nothing.
std::vector<size_t> ScopeOf(const std::vector<std::string>& keys, const CatalogFacts& catalog,
                            const MergeSet& set) {
  std::vector<size_t> wanted;
  for (const std::string& key : keys) {
    const std::vector<size_t> positions = set.ModulesOfKey(key);
    if (positions.empty()) {
      RemarkUnknownKey(KeysOf(catalog.modules), key);
      return {};
    }
    wanted.insert(wanted.end(), positions.begin(), positions.end());
  }
  std::vector<size_t> scope;
  for (const PlannedModule& planned : PlanMerge(set, wanted).modules) {
    scope.push_back(planned.module);
  }
  return scope;
}

std::string Count(size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string FindingsText(const std::vector<Finding>& findings, size_t modules) {
  std::string text;
  for (const Finding& finding : findings) {
    text += Highlighted(finding.code) + ": " + Printable(finding.text) + '\n';
  }
  return text + (findings.empty() ? "No findings" : Count(findings.size(), "finding")) + " in " +
         Count(modules, "module") + '\n';
}

Json FindingsJson(const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings) {
    list.push_back({{"code", finding.code}, {"modules", finding.modules}, {"text", finding.text}});
  }
  return list;
}

struct Options {
  std::vector<std::string> keys;  ///< empty for the whole catalog
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("KEY", options.keys, "Modules to merge, ID or ID:LANGUAGE (default: all)");
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const std::vector<std::string>& keys = options.keys;
  Report report("check", output);
  CatalogFacts catalog = ReadCatalogFacts(kRequirements | kExclusions | kFiles, report);
  ReadDownloads(catalog, report);
  const MergeSet set(catalog.merge);
  const std::vector<size_t> scope =
      keys.empty() ? AllPositions(catalog.modules.size()) : ScopeOf(keys, catalog, set);
  report.Document()["modules"] = scope.size();
  report.Document()["findings"] = Json::array();
  if (!keys.empty() && scope.empty()) {
    return report.Finish(kNothingMatched);
  }
  TargetPaths paths(catalog, report);
  std::vector<Finding> findings = CheckModules(
      set, catalog.details, scope,
      [&](size_t module, const std::string& directory) { return paths.Find(module, directory); });
  if (keys.empty()) {
    const std::vector<Finding> ofIndexes = CheckIndexes(set, ReadIndexEntries(report));
    findings.insert(findings.end(), ofIndexes.begin(), ofIndexes.end());
    Sort(findings);
  }
  report.Document()["findings"] = FindingsJson(findings);
  report.Print(FindingsText(findings, scope.size()));
  return report.Finish(findings.empty() ? kSuccess : kFindings);
}

}  // namespace

extern const Command kCheckCommand = {
    "check",
    "Report what is wrong in the catalog or in a set of modules",
    "  mmcat check --folder C:\\Modules\n"
    "  mmcat check Charmap.3128F3C8:1033 Zip.DC6CE4A1    these two and what they need\n",
    PrepareCommand<Options, AddArguments, Run>,
};
