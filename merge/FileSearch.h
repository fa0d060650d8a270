#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "merge/Findings.h"

namespace qm::merge {

/// Makes the delivered file that a row of the File table describes. `fileName` is as in the table:
/// "SHORT.TXT|long name.txt", or one name.
DeliveredFile MakeDeliveredFile(const std::string& fileName, std::string directory, std::string key,
                                std::string version, std::optional<long> size);

bool HasWildcard(std::string_view pattern) noexcept;

/// Returns whether a UTF-8 name matches a pattern, in which `*` matches any number of characters
/// and `?` exactly one. Case-sensitive.
bool MatchesPattern(std::string_view name, std::string_view pattern) noexcept;

struct FoundFile {
  size_t module;  ///< position in the list
  const DeliveredFile* file;
};

/// Returns the files whose long or short name matches a pattern, ignoring case. Sorted by module,
/// then by name and key.
std::vector<FoundFile> FindFiles(const std::vector<ModuleDetails>& modules,
                                 const std::string& pattern);

}  // namespace qm::merge
