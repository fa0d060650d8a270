#include "client/findings/CheckJson.h"

#include <utility>

namespace mmcat {

namespace {

Json MakeRequiredJson(const RequirementFacts& required) {
  return {{"key", required.key},
          {"moduleId", required.moduleId},
          {"language", MakeNumberOrNull(required.language)},
          {"version", required.version},
          {"carriedFrom", required.carriedFrom}};
}

Json MakeValuesJson(const std::vector<FindingValueFacts>& values, const CheckResult& result) {
  Json list = Json::array();
  for (const FindingValueFacts& value : values) {
    const ModuleFacts* const module = value.module ? &result.modules[*value.module] : nullptr;
    list.push_back({{"module", module ? module->key : ""},
                    {"path", module ? module->path : ""},
                    {"column", value.column},
                    {"value", value.value}});
  }
  return list;
}

Json MakePathsJson(const std::vector<size_t>& positions, const CheckResult& result) {
  Json list = Json::array();
  for (const size_t position : positions) {
    list.push_back(result.modules[position].path);
  }
  return list;
}

/// A finding as JSON. Members that say what it is about are there only if they apply.
Json MakeFindingJson(const JudgedFinding& judged, const CheckResult& result) {
  const FindingFacts& finding = judged.facts;
  Json json = {{"code", finding.code},
               {"status", GetStatusName(judged.status)},
               {"severity", finding.severity},
               {"mergeErrorType",
                finding.mergeErrorType == 0 ? Json(nullptr) : Json(finding.mergeErrorType)},
               {"modules", finding.moduleKeys},
               {"paths", MakePathsJson(finding.modules, result)},
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
    json["values"] = MakeValuesJson(finding.values, result);
  }
  return json;
}

}  // namespace

void AddCheckJson(const CheckResult& result, Json& document) {
  Json modules = Json::array();
  for (const size_t position : result.scope) {
    const ModuleFacts& module = result.modules[position];
    modules.push_back({{"key", module.key},
                       {"version", module.version},
                       {"displayName", module.displayName},
                       {"path", module.path}});
  }
  Json findings = Json::array();
  for (const JudgedFinding& finding : result.findings) {
    findings.push_back(MakeFindingJson(finding, result));
  }
  Json unmatched = Json::array();
  for (const BaselineEntry& entry : result.unmatchedBaseline) {
    unmatched.push_back(MakeBaselineEntryJson(entry));
  }
  document.update({{"modules", std::move(modules)},
                   {"findings", std::move(findings)},
                   {"unmatchedBaseline", std::move(unmatched)}});
}

}  // namespace mmcat
