#include "merge/FindingCodes.h"

#include <algorithm>

namespace qm::merge {

namespace {

// The installer's kinds of merge conflict that are found here.
constexpr long kNoMergeError = 0;
constexpr long kExclusionError = 3;
constexpr long kRowError = 4;

}  // namespace

const std::vector<FindingCode>& FindingCodes() {
  static const std::vector<FindingCode> codes = {
      {kChangedModule, Severity::Warning, kNoMergeError, "A file is not the one that was listed"},
      {kDependencyCycle, Severity::Warning, kNoMergeError, "Modules need one another"},
      {kDuplicateModuleKey, Severity::Error, kRowError, "Several modules have the same key"},
      {kExclusion, Severity::Error, kExclusionError, "A module excludes another one"},
      {kFileConflict, Severity::Error, kNoMergeError,
       "Different components install a file of the same name to one folder"},
      {kMissingDependency, Severity::Error, kNoMergeError, "No module satisfies a requirement"},
      {kNeedsDownload, Severity::Warning, kNoMergeError, "A module has to be downloaded"},
      {kSeveralVersions, Severity::Error, kNoMergeError, "A module is there in several versions"},
      {kUnknownModule, Severity::Warning, kNoMergeError,
       "An index names a module that is not there"},
      {kUnreadableIndex, Severity::Warning, kNoMergeError, "An index file cannot be read"},
      {kUnreadableModule, Severity::Error, kNoMergeError, "A module cannot be read"},
  };
  return codes;
}

const FindingCode& GetFindingCode(std::string_view code) {
  const std::vector<FindingCode>& codes = FindingCodes();
  return *std::lower_bound(
      codes.begin(), codes.end(), code,
      [](const FindingCode& entry, std::string_view wanted) { return entry.code < wanted; });
}

const char* GetSeverityName(Severity severity) noexcept {
  switch (severity) {
    case Severity::Error:
      return "error";
    case Severity::Warning:
      return "warning";
    default:
      return "note";
  }
}

}  // namespace qm::merge
