#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "merge/Findings.h"

/// A row of a File table; `fileName` as the table has it, "SHORT.TXT|long name.txt" or one name.
DeliveredFile MakeDeliveredFile(const std::string& fileName, std::string directory, std::string key,
                                std::string version, std::optional<long> size);

bool HasWildcard(std::string_view pattern) noexcept;

/// Whether a UTF-8 name is what a pattern stands for, in which `*` is any characters or none and
/// `?` one character. Case makes a difference.
bool MatchesPattern(std::string_view name, std::string_view pattern) noexcept;

struct FoundFile {
  size_t module;  ///< position
  const DeliveredFile* file;
};

/// The files whose long or short name is a pattern's, in any letter case: in the order of modules,
/// then of names and keys.
std::vector<FoundFile> FindFiles(const std::vector<CheckedModule>& modules,
                                 const std::string& pattern);
