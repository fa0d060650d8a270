#include <algorithm>
#include <tuple>

#include "client/catalog/ModuleSet.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::vector<ExclusionFacts> ListExclusions(const ModuleSet& set) {
  std::vector<ExclusionFacts> list = set.Exclusions();
  std::sort(list.begin(), list.end(), [](const ExclusionFacts& a, const ExclusionFacts& b) {
    return std::tie(a.module, a.moduleId, a.language) < std::tie(b.module, b.moduleId, b.language);
  });
  return list;
}

std::string FormatExclusions(const std::vector<ModuleFacts>& modules,
                             const std::vector<ExclusionFacts>& list) {
  if (list.empty()) {
    return "No exclusions\n";
  }
  TextTable table(
      {"Module", "Excludes", "Language", "From version", "To version", "Carried from", "Affects"});
  for (const ExclusionFacts& exclusion : list) {
    std::string affected;
    for (const size_t position : exclusion.excluded) {
      affected +=
          (affected.empty() ? "" : ", ") + modules[position].key + " " + modules[position].version;
    }
    table.AddRow({modules[exclusion.module].key, exclusion.moduleId,
                  exclusion.language ? std::to_string(*exclusion.language) : "",
                  exclusion.minVersion, exclusion.maxVersion, exclusion.carriedFrom, affected});
  }
  return table.ToString("");
}

Json MakeExclusionsJson(const std::vector<ModuleFacts>& modules,
                        const std::vector<ExclusionFacts>& exclusions) {
  Json list = Json::array();
  for (const ExclusionFacts& exclusion : exclusions) {
    Json affected = Json::array();
    for (const size_t position : exclusion.excluded) {
      affected.push_back({{"key", modules[position].key},
                          {"version", modules[position].version},
                          {"path", modules[position].path}});
    }
    list.push_back({{"module", modules[exclusion.module].key},
                    {"path", modules[exclusion.module].path},
                    {"moduleId", exclusion.moduleId},
                    {"language", MakeNumberOrNull(exclusion.language)},
                    {"minVersion", exclusion.minVersion},
                    {"maxVersion", exclusion.maxVersion},
                    {"carriedFrom", exclusion.carriedFrom},
                    {"hits", std::move(affected)}});
  }
  return list;
}

ExitCode Run(const OutputOptions& output) {
  Report report("exclusions", output);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  const std::vector<ExclusionFacts> exclusions = ListExclusions(set);
  const ExitCode outcome = RequireModules(set.Modules().size());
  if (report.IsJson()) {
    report.Document()["exclusions"] = MakeExclusionsJson(set.Modules(), exclusions);
  } else if (outcome == kSuccess) {
    report.Print(FormatExclusions(set.Modules(), exclusions));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kExclusionsCommand = {
    "exclusions",
    "List what the modules exclude, and which modules this affects",
    "  mmcat exclusions --folder samples/modules\n",
    PrepareCommand<Run>,
};

}  // namespace mmcat
