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

namespace mmcat {

namespace {

/// Target paths of directories. All directories of a module are resolved together when the first of
/// them is asked for.
class TargetPaths {
 public:
  TargetPaths(const CatalogFacts& catalog, Report& report) : m_catalog(catalog), m_report(report) {}

  std::string FindPath(size_t module, const std::string& directory) {
    const auto known = m_directories.find(module);
    const qm::msidb::TargetDirectoryMap& directories =
        known == m_directories.end() ? ResolveDirectories(module) : known->second;
    const auto found = directories.find(qm::text::ToWide(directory));
    return found == directories.end() ? "" : FormatFolder(found->second);
  }

 private:
  /// The path with its root, which distinguishes folders of the same name.
  static std::string FormatFolder(const qm::msidb::TargetDirectory& directory) {
    const std::string path = qm::text::ToUtf8(directory.path);
    const bool namesRoot = !path.empty() && path.front() == '[';
    return namesRoot || directory.root.empty()
               ? path
               : '[' + qm::text::ToUtf8(directory.root) + ']' + path;
  }

  const qm::msidb::TargetDirectoryMap& ResolveDirectories(size_t module) {
    qm::msidb::TargetDirectoryMap& directories = m_directories[module];
    for (const qm::merge::DeliveredFile& file : m_catalog.mergeModules[module].files) {
      directories.try_emplace(qm::text::ToWide(file.directory));
    }
    const std::string& path = m_catalog.modules[module].path;
    const HRESULT hr = qm::msidb::ResolveTargetDirectories(
        qm::text::ToWide(path), qm::traits::MakeTargetPathOptions(), directories);
    if (FAILED(hr)) {
      m_report.AddFailure(path, "target paths", hr, ServerFailure::Capture(hr).what());
    }
    return directories;
  }

  const CatalogFacts& m_catalog;
  Report& m_report;
  std::map<size_t, qm::msidb::TargetDirectoryMap> m_directories;
};

/// Notes which modules need a download. Only modules that the gallery describes are asked: no other
/// module can need one.
void ReadDownloads(CatalogFacts& catalog, Report& report) {
  std::set<std::string> described;
  for (const GalleryFile& file : ReadGalleryFiles()) {
    described.insert(qm::text::FoldCase(file.packageCode));
  }
  for (size_t position = 0; position < catalog.modules.size(); ++position) {
    const ListedModule& module = catalog.modules[position];
    if (described.count(qm::text::FoldCase(module.packageCode)) == 0) {
      continue;
    }
    try {
      catalog.mergeModules[position].needsDownload =
          ReadFlag<IMergeModule2>(*module.object.Get(), &IMergeModule2::get_NeedsDownload);
    } catch (const ServerFailure& failure) {
      report.AddFailure(module.path, "gallery", failure.HResult(), failure.what());
    }
  }
}

std::vector<size_t> MakeAllPositions(size_t count) {
  std::vector<size_t> positions(count);
  for (size_t position = 0; position < count; ++position) {
    positions[position] = position;
  }
  return positions;
}

/// The modules of the keys and everything they need. If a key matches no module, prints a remark
/// and returns nothing.
std::vector<size_t> FindScope(const std::vector<std::string>& keys, const CatalogFacts& catalog,
                              const qm::merge::ModuleIndex& set) {
  std::vector<size_t> wanted;
  for (const std::string& key : keys) {
    const std::vector<size_t> positions = set.FindByKey(key);
    if (positions.empty()) {
      PrintUnknownKey(CollectKeys(catalog.modules), key);
      return {};
    }
    wanted.insert(wanted.end(), positions.begin(), positions.end());
  }
  std::vector<size_t> scope;
  for (const qm::merge::PlannedModule& planned : qm::merge::PlanMerge(set, wanted).modules) {
    scope.push_back(planned.module);
  }
  return scope;
}

std::string FormatCount(size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string FormatFindings(const std::vector<qm::merge::Finding>& findings, size_t modules) {
  std::string text;
  for (const qm::merge::Finding& finding : findings) {
    text += MarkHighlight(finding.code) + ": " + MakePrintable(finding.text) + '\n';
  }
  return text + (findings.empty() ? "No findings" : FormatCount(findings.size(), "finding")) +
         " in " + FormatCount(modules, "module") + '\n';
}

Json MakeFindingsJson(const std::vector<qm::merge::Finding>& findings) {
  Json list = Json::array();
  for (const qm::merge::Finding& finding : findings) {
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
  CatalogFacts catalog =
      ReadCatalogFacts(kRequirementTables | kExclusionTables | kFileTables, report);
  ReadDownloads(catalog, report);
  const qm::merge::ModuleIndex set(catalog.mergeModules);
  const std::vector<size_t> scope =
      keys.empty() ? MakeAllPositions(catalog.modules.size()) : FindScope(keys, catalog, set);
  report.Document()["modules"] = scope.size();
  report.Document()["findings"] = Json::array();
  if (!keys.empty() && scope.empty()) {
    return report.Finish(kNothingMatched);
  }
  TargetPaths paths(catalog, report);
  std::vector<qm::merge::Finding> findings =
      qm::merge::CheckModules(set, scope, [&](size_t module, std::string_view directory) {
        return paths.FindPath(module, std::string(directory));
      });
  if (keys.empty()) {
    const std::vector<qm::merge::Finding> ofIndexes =
        qm::merge::CheckIndexes(set, ReadIndexEntries(report));
    findings.insert(findings.end(), ofIndexes.begin(), ofIndexes.end());
    qm::merge::SortFindings(findings);
  }
  report.Document()["findings"] = MakeFindingsJson(findings);
  report.Print(FormatFindings(findings, scope.size()));
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

}  // namespace mmcat
