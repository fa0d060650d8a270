#pragma once

#include <string_view>
#include <vector>

namespace qm::merge {

enum class Severity {
  Error,    ///< the merge fails, or the merged package installs wrongly
  Warning,  ///< probably not what the authors want
  Note
};

// Codes of findings. Programs rely on the values, which never change.
inline constexpr char kMissingDependency[] = "missing-dependency";
inline constexpr char kDependencyCycle[] = "dependency-cycle";
inline constexpr char kExclusion[] = "exclusion";
inline constexpr char kDuplicateModuleKey[] = "duplicate-key";
inline constexpr char kSeveralVersions[] = "several-versions";
inline constexpr char kFileConflict[] = "file-conflict";
inline constexpr char kUnreadableModule[] = "unreadable-module";
inline constexpr char kUnknownModule[] = "unknown-module";
inline constexpr char kNeedsDownload[] = "needs-download";
inline constexpr char kChangedModule[] = "changed-module";
inline constexpr char kUnreadableIndex[] = "unreadable-index";
inline constexpr char kRowConflict[] = "row-conflict";
inline constexpr char kTableConflict[] = "table-conflict";
inline constexpr char kComponentConflict[] = "component-conflict";
inline constexpr char kShortNameConflict[] = "short-name-conflict";
inline constexpr char kDuplicateFile[] = "duplicate-file";
inline constexpr char kMissingComponent[] = "missing-component";
inline constexpr char kMissingDirectory[] = "missing-directory";
inline constexpr char kDirectoryCycle[] = "directory-cycle";
inline constexpr char kPlatformConflict[] = "platform-conflict";
inline constexpr char kDuplicatePackageCode[] = "duplicate-package-code";
inline constexpr char kTemplateLanguage[] = "template-language";
inline constexpr char kMalformedVersion[] = "malformed-version";
inline constexpr char kUnplacedAction[] = "unplaced-action";
inline constexpr char kSeveralLanguages[] = "several-languages";
inline constexpr char kUndeclaredItem[] = "undeclared-item";

/// What holds for every finding of a code.
struct FindingCode {
  std::string_view code;
  Severity severity;  ///< the highest one; a finding may have a lower one
  long mergeError;    ///< the installer's number for this kind of merge conflict; 0 if it has none
  std::string_view title;
};

/// All codes, sorted.
const std::vector<FindingCode>& FindingCodes();

/// Returns the entry of a code, which must be one of the constants.
const FindingCode& GetFindingCode(std::string_view code);

/// Returns "error", "warning" or "note".
const char* GetSeverityName(Severity severity) noexcept;

}  // namespace qm::merge
