#include <algorithm>
#include <map>
#include <tuple>

#include "client/catalog/ModuleSet.h"
#include "client/commands/Commands.h"
#include "client/commands/ModuleChain.h"
#include "client/commands/NoModules.h"
#include "client/terminal/Csv.h"
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

/// The modules that bring in each excluding module, by its position.
using Users = std::map<size_t, std::vector<UserFacts>>;

Users FindUsers(const ModuleSet& set, const std::vector<ExclusionFacts>& exclusions) {
  Users users;
  for (const ExclusionFacts& exclusion : exclusions) {
    if (users.count(exclusion.module) == 0) {
      users.emplace(exclusion.module, set.UsersOf(exclusion.module));
    }
  }
  return users;
}

/// Lists the modules that need an excluding module and so cannot be merged with what it excludes.
std::string FormatUsers(const std::vector<ModuleFacts>& modules, const Users& users) {
  TextTable table({"Excluding module", "Brought in by", "Version", "Chain"});
  bool isEmpty = true;
  for (const auto& [module, list] : users) {
    for (const UserFacts& user : list) {
      table.AddRow({modules[module].key, modules[user.module].key, modules[user.module].version,
                    user.through == module ? "" : FormatChain(modules, user, module)});
      isEmpty = false;
    }
  }
  return isEmpty ? "" : '\n' + table.ToString("");
}

std::string FormatVersions(const ExclusionFacts& exclusion) {
  const auto& [first, last] = std::tie(exclusion.minVersion, exclusion.maxVersion);
  return first == last   ? (first.empty() ? "all" : first)
         : first.empty() ? "up to " + last
         : last.empty()  ? "from " + first
                         : first + " to " + last;
}

std::string FormatExclusions(const std::vector<ModuleFacts>& modules,
                             const std::vector<ExclusionFacts>& list, const Users& users) {
  if (list.empty()) {
    return "No exclusions\n";
  }
  TextTable table({"Module", "Excludes", "Versions", "Affects", "Language", "Carried from"});
  for (const ExclusionFacts& exclusion : list) {
    std::string affected;
    for (const size_t position : exclusion.excluded) {
      // All have the excluded ID.
      const std::string& key = modules[position].key;
      affected += (affected.empty() ? "" : ", ") + key.substr(key.rfind(':') + 1) + ' ' +
                  modules[position].version;
    }
    table.AddRow({modules[exclusion.module].key, exclusion.moduleId, FormatVersions(exclusion),
                  affected, exclusion.language ? std::to_string(*exclusion.language) : "",
                  exclusion.carriedFrom});
  }
  return table.ToString("") + FormatUsers(modules, users);
}

/// Lists, for each excluding module that others need, what brings it in.
Json MakeUsersJson(const std::vector<ModuleFacts>& modules, const Users& users) {
  Json list = Json::array();
  for (const auto& [module, needed] : users) {
    Json by = Json::array();
    for (const UserFacts& user : needed) {
      by.push_back({{"key", modules[user.module].key},
                    {"version", modules[user.module].version},
                    {"path", modules[user.module].path},
                    {"chain", MakeKeysJson(modules, user.chain)}});
    }
    if (!by.empty()) {
      list.push_back(
          {{"module", modules[module].key}, {"path", modules[module].path}, {"by", std::move(by)}});
    }
  }
  return list;
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

/// The exclusions as CSV, with a row for each module that one affects, or one row if it affects
/// none.
std::string FormatExclusionsCsv(const std::vector<ModuleFacts>& modules,
                                const std::vector<ExclusionFacts>& exclusions) {
  Json rows = Json::array();
  for (const Json& exclusion : MakeExclusionsJson(modules, exclusions)) {
    for (const Json& hit : exclusion["hits"]) {
      rows.push_back(exclusion);
      rows.back().update(
          {{"hitKey", hit["key"]}, {"hitVersion", hit["version"]}, {"hitPath", hit["path"]}});
    }
    if (exclusion["hits"].empty()) {
      rows.push_back(exclusion);
    }
  }
  return FormatCsv({"module", "path", "moduleId", "language", "minVersion", "maxVersion",
                    "carriedFrom", "hitKey", "hitVersion", "hitPath"},
                   rows);
}

ExitCode Run(const OutputOptions& output) {
  Report report("exclusions", output);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  const std::vector<ExclusionFacts> exclusions = ListExclusions(set);
  const ExitCode outcome = RequireModules(set.Modules().size());
  if (report.IsJson()) {
    report.Document()["exclusions"] = MakeExclusionsJson(set.Modules(), exclusions);
    report.Document()["broughtIn"] = MakeUsersJson(set.Modules(), FindUsers(set, exclusions));
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatExclusionsCsv(set.Modules(), exclusions));
  } else if (outcome == kSuccess) {
    report.Print(FormatExclusions(set.Modules(), exclusions, FindUsers(set, exclusions)));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kExclusionsCommand = {
    "exclusions",
    "List what the modules exclude, and which modules this affects",
    "  mmcat exclusions --folder samples/modules\n",
    PrepareCommand<Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
