#include <CLI/CLI.hpp>
#include <numeric>

#include "client/catalog/ModuleSet.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"
#include "client/commands/UnknownKey.h"
#include "client/terminal/Style.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string FormatCount(size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

/// The values of a finding side by side, with the files of their modules.
std::string FormatValues(const std::vector<FindingValueFacts>& values, const ModuleSet& set) {
  if (values.empty()) {
    return {};
  }
  TextTable table({"Column", "Value", "Module", "Module path"});
  for (const FindingValueFacts& value : values) {
    const ModuleFacts* const module = value.module ? &set.Modules()[*value.module] : nullptr;
    table.AddRow(
        {value.column, value.value, module ? module->key : "", module ? module->path : ""});
  }
  return table.ToString("    ");
}

std::string FormatFindings(const std::vector<FindingFacts>& findings, size_t modules,
                           const ModuleSet& set) {
  std::string text;
  for (const FindingFacts& finding : findings) {
    text += finding.severity + ' ' + MarkHighlight(finding.code) + ": " +
            MakePrintable(finding.text) + '\n' + FormatValues(finding.values, set);
  }
  return text + (findings.empty() ? "No findings" : FormatCount(findings.size(), "finding")) +
         " in " + FormatCount(modules, "module") + '\n';
}

Json MakeRequiredJson(const RequirementFacts& required) {
  return {{"key", required.key},
          {"moduleId", required.moduleId},
          {"language", MakeNumberOrNull(required.language)},
          {"version", required.version},
          {"carriedFrom", required.carriedFrom}};
}

Json MakeValuesJson(const std::vector<FindingValueFacts>& values, const ModuleSet& set) {
  Json list = Json::array();
  for (const FindingValueFacts& value : values) {
    list.push_back({{"module", value.module ? set.Modules()[*value.module].key : ""},
                    {"column", value.column},
                    {"value", value.value}});
  }
  return list;
}

/// A finding as JSON. Members that say what it is about are there only if they apply.
Json MakeFindingJson(const FindingFacts& finding, const ModuleSet& set) {
  Json json = {{"code", finding.code},
               {"severity", finding.severity},
               {"mergeErrorType",
                finding.mergeErrorType == 0 ? Json(nullptr) : Json(finding.mergeErrorType)},
               {"modules", finding.moduleKeys},
               {"text", finding.text}};
  if (finding.required) {
    json["required"] = MakeRequiredJson(*finding.required);
  }
  const std::pair<const char*, const std::string&> texts[] = {{"file", finding.file},
                                                              {"folder", finding.folder},
                                                              {"table", finding.table},
                                                              {"key", finding.key}};
  for (const auto& [name, value] : texts) {
    if (!value.empty()) {
      json[name] = value;
    }
  }
  if (!finding.versions.empty()) {
    json["versions"] = finding.versions;
  }
  if (!finding.values.empty()) {
    json["values"] = MakeValuesJson(finding.values, set);
  }
  return json;
}

Json MakeFindingsJson(const std::vector<FindingFacts>& findings, const ModuleSet& set) {
  Json list = Json::array();
  for (const FindingFacts& finding : findings) {
    list.push_back(MakeFindingJson(finding, set));
  }
  return list;
}

/// The modules that are checked: those of the keys and what they need, or all.
std::vector<size_t> FindScope(const ModuleSet& set, const std::vector<std::string>& keys) {
  std::vector<size_t> scope;
  if (keys.empty()) {
    scope.resize(set.Modules().size());
    std::iota(scope.begin(), scope.end(), 0);
    return scope;
  }
  for (const PlannedFacts& planned : set.Plan(keys).modules) {
    scope.push_back(planned.module);
  }
  return scope;
}

Json MakeScopeJson(const ModuleSet& set, const std::vector<size_t>& scope) {
  Json list = Json::array();
  for (const size_t position : scope) {
    const ModuleFacts& module = set.Modules()[position];
    list.push_back({{"key", module.key},
                    {"version", module.version},
                    {"displayName", module.displayName},
                    {"path", module.path}});
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
  Report report("check", output, 2);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::ModulesAndIndexes, report);
  report.Document()["modules"] = Json::array();
  report.Document()["findings"] = Json::array();
  for (const std::string& key : keys) {
    if (set.FindModules(key).empty()) {
      PrintUnknownKey(set.Keys(), key);
      return report.Finish(kNothingMatched);
    }
  }
  const std::vector<size_t> modules = FindScope(set, keys);
  const std::vector<FindingFacts> findings = set.Check(keys);
  report.Document()["modules"] = MakeScopeJson(set, modules);
  report.Document()["findings"] = MakeFindingsJson(findings, set);
  const ExitCode outcome = RequireModules(set.Modules().size());
  if (outcome == kSuccess || !findings.empty()) {
    report.Print(FormatFindings(findings, modules.size(), set));
  }
  return report.Finish(outcome == kSuccess && !findings.empty() ? kFindings : outcome);
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
