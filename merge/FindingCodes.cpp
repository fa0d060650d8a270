#include "merge/FindingCodes.h"

#include <algorithm>

namespace qm::merge {

namespace {

// The installer's kinds of merge conflict that are found here.
constexpr long kNoMergeError = 0;
constexpr long kLanguageError = 1;
constexpr long kExclusionError = 3;
constexpr long kRowError = 4;
constexpr long kSequenceError = 5;
constexpr long kItemError = 11;
constexpr long kPlatformError = 14;

}  // namespace

const std::vector<FindingCode>& FindingCodes() {
  static const std::vector<FindingCode> codes = {
      {kChangedModule, Severity::Warning, kNoMergeError, "A file is not the one that was listed"},
      {kComponentConflict, Severity::Error, kNoMergeError,
       "Different components have the same identifier"},
      {kDependencyCycle, Severity::Warning, kNoMergeError, "Modules need one another"},
      {kDirectoryCycle, Severity::Error, kNoMergeError, "A directory lies below itself"},
      {kDuplicateFile, Severity::Error, kNoMergeError,
       "A module installs a file twice to one folder"},
      {kDuplicateModuleKey, Severity::Error, kRowError, "Several modules have the same key"},
      {kDuplicatePackageCode, Severity::Warning, kNoMergeError,
       "Different modules have the same package code"},
      {kExclusion, Severity::Error, kExclusionError, "A module excludes another one"},
      {kFileConflict, Severity::Error, kNoMergeError,
       "Different components install a file of the same name to one folder"},
      {kMalformedVersion, Severity::Warning, kNoMergeError, "A version is not one"},
      {kMissingComponent, Severity::Error, kNoMergeError, "A file has no component"},
      {kMissingDependency, Severity::Error, kNoMergeError, "No module satisfies a requirement"},
      {kMissingDirectory, Severity::Error, kNoMergeError, "A directory has no row"},
      {kNeedsDownload, Severity::Warning, kNoMergeError,
       "A module or files of it are not on this machine"},
      {kPlatformConflict, Severity::Error, kPlatformError,
       "Modules are for platforms that do not go together"},
      {kRowConflict, Severity::Error, kRowError, "Rows of the same key differ"},
      {kSeveralLanguages, Severity::Error, kNoMergeError,
       "One merge has a module in several languages"},
      {kSeveralVersions, Severity::Error, kNoMergeError, "A module is there in several versions"},
      {kShortNameConflict, Severity::Warning, kNoMergeError,
       "Different files have the same short name in one folder"},
      {kTableConflict, Severity::Error, kNoMergeError, "A table has different columns"},
      {kTemplateLanguage, Severity::Warning, kLanguageError,
       "A module is not for its own language"},
      {kUndeclaredItem, Severity::Error, kItemError, "A configurable item is not declared"},
      {kUnknownModule, Severity::Warning, kNoMergeError,
       "An index names a module that is not there"},
      {kUnplacedAction, Severity::Error, kSequenceError, "An action finds no place in a sequence"},
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
