#include "merge/PlanObjections.h"

#include <algorithm>
#include <string>
#include <utility>

namespace qm::merge {

namespace {

/// Returns two modules whose rows differ. The finding may name more, of which some agree, and an
/// objection to fewer modules rules out more plans.
std::vector<size_t> FindOpponents(const Finding& finding) {
  const std::vector<FindingValue>& values = finding.values;
  const auto other = std::find_if(values.begin(), values.end(), [&](const FindingValue& value) {
    return value.column == values.front().column && value.value != values.front().value;
  });
  return other == values.end() ? finding.positions
                               : std::vector<size_t>{*values.front().module, *other->module};
}

/// Adds an objection to each two modules for different 64-bit platforms, of which one is the first
/// of its platform. The finding names only one module of each platform, and a plan would learn the
/// others one by one.
void ObjectToPlatforms(const ModuleIndex& set, const std::vector<size_t>& plan,
                       const std::string& text, std::vector<Objection>& objections) {
  const auto byPlatform = set.GroupBy64BitPlatform(plan);
  for (const auto& [platform, modules] : byPlatform) {
    for (const auto& [other, others] : byPlatform) {
      for (const size_t module : modules) {
        if (platform != other) {
          objections.push_back({{module, others.front()}, text});
        }
      }
    }
  }
}

}  // namespace

std::vector<Objection> FindCheckObjections(const ModuleIndex& set, const std::vector<size_t>& plan,
                                           CheckOptions options) {
  options.checkedAs = CheckedAs::Merge;
  std::vector<Objection> objections;
  for (Finding& finding : CheckModules(set, plan, options)) {
    if (finding.code == kPlatformConflict && !finding.required) {
      ObjectToPlatforms(set, plan, finding.text, objections);
    } else if (finding.severity == Severity::Error && finding.code != kMissingDependency) {
      std::vector<size_t> modules =
          finding.code == kRowConflict ? FindOpponents(finding) : std::move(finding.positions);
      objections.push_back({std::move(modules), std::move(finding.text)});
    }
  }
  return objections;
}

}  // namespace qm::merge
