#include <algorithm>
#include <tuple>

#include "client/catalog/CatalogFacts.h"
#include "client/commands/Commands.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

struct ListedExclusion {
  size_t module;  ///< position of the excluding module
  qm::merge::Exclusion exclusion;
  std::vector<size_t> hits;  ///< positions of the excluded modules
};

std::vector<ListedExclusion> ListExclusions(const CatalogFacts& catalog) {
  const qm::merge::ModuleIndex set(catalog.mergeModules);
  std::vector<ListedExclusion> list;
  for (size_t position = 0; position < catalog.modules.size(); ++position) {
    for (const qm::merge::Exclusion& exclusion : catalog.mergeModules[position].exclusions) {
      list.push_back(
          {position, exclusion, qm::merge::FindExcludedModules(set, position, exclusion)});
    }
  }
  std::sort(list.begin(), list.end(), [](const ListedExclusion& a, const ListedExclusion& b) {
    return std::tie(a.module, a.exclusion.moduleId, a.exclusion.language) <
           std::tie(b.module, b.exclusion.moduleId, b.exclusion.language);
  });
  return list;
}

std::string FormatExclusions(const CatalogFacts& catalog,
                             const std::vector<ListedExclusion>& list) {
  if (list.empty()) {
    return "No exclusions\n";
  }
  TextTable table({"Module", "Excludes", "Language", "From version", "To version", "Affects"});
  for (const auto& [module, exclusion, hits] : list) {
    std::string hit;
    for (const size_t position : hits) {
      hit += (hit.empty() ? "" : ", ") + catalog.modules[position].key + " " +
             catalog.modules[position].version;
    }
    table.AddRow({catalog.modules[module].key, exclusion.moduleId,
                  exclusion.language ? std::to_string(*exclusion.language) : "",
                  exclusion.minVersion, exclusion.maxVersion, hit});
  }
  return table.ToString("");
}

Json MakeExclusionsJson(const CatalogFacts& catalog,
                        const std::vector<ListedExclusion>& exclusions) {
  Json list = Json::array();
  for (const auto& [module, exclusion, hits] : exclusions) {
    Json hitModules = Json::array();
    for (const size_t position : hits) {
      hitModules.push_back({{"key", catalog.modules[position].key},
                            {"version", catalog.modules[position].version},
                            {"path", catalog.modules[position].path}});
    }
    list.push_back({{"module", catalog.modules[module].key},
                    {"path", catalog.modules[module].path},
                    {"moduleId", exclusion.moduleId},
                    {"language", exclusion.language ? Json(*exclusion.language) : Json(nullptr)},
                    {"minVersion", exclusion.minVersion},
                    {"maxVersion", exclusion.maxVersion},
                    {"hits", std::move(hitModules)}});
  }
  return list;
}

ExitCode Run(const OutputOptions& output) {
  Report report("exclusions", output);
  const CatalogFacts catalog = ReadCatalogFacts(kExclusionTables, report);
  const std::vector<ListedExclusion> exclusions = ListExclusions(catalog);
  if (report.IsJson()) {
    report.Document()["exclusions"] = MakeExclusionsJson(catalog, exclusions);
  } else {
    report.Print(FormatExclusions(catalog, exclusions));
  }
  return report.Finish();
}

}  // namespace

extern const Command kExclusionsCommand = {
    "exclusions",
    "List what the modules exclude, and which modules this affects",
    "  mmcat exclusions --folder C:\\Modules\n",
    PrepareCommand<Run>,
};

}  // namespace mmcat
