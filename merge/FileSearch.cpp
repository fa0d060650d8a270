#include "merge/FileSearch.h"

#include <algorithm>
#include <tuple>

#include "text/Fold.h"

namespace qm::merge {

namespace {

/// Removes the first character of UTF-8 text.
void RemoveFirstCharacter(std::string_view& text) noexcept {
  do {
    text.remove_prefix(1);
  } while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0U) == 0x80U);
}

}  // namespace

DeliveredFile MakeDeliveredFile(const std::string& fileName, std::string directory, std::string key,
                                std::string version, std::optional<long> size) {
  const size_t bar = fileName.find('|');
  const bool hasBoth = bar != std::string::npos;
  return {hasBoth ? fileName.substr(bar + 1) : fileName,
          std::move(directory),
          hasBoth ? fileName.substr(0, bar) : "",
          std::move(key),
          std::move(version),
          size};
}

bool HasWildcard(std::string_view pattern) noexcept {
  return pattern.find_first_of("*?") != std::string_view::npos;
}

bool MatchesPattern(std::string_view name, std::string_view pattern) noexcept {
  // The rest of both after the last asterisk, which matches one more character at each retry.
  std::string_view retryName;
  std::string_view retryPattern;
  bool canRetry = false;
  while (!name.empty()) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      retryName = name;
      retryPattern = pattern;
      canRetry = true;
    } else if (!pattern.empty() && pattern.front() == '?') {
      pattern.remove_prefix(1);
      RemoveFirstCharacter(name);
    } else if (!pattern.empty() && pattern.front() == name.front()) {
      pattern.remove_prefix(1);
      name.remove_prefix(1);
    } else if (canRetry) {
      RemoveFirstCharacter(retryName);
      name = retryName;
      pattern = retryPattern;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*') == std::string_view::npos;
}

std::vector<FoundFile> FindFiles(const std::vector<ModuleDetails>& modules,
                                 const std::string& pattern) {
  const std::string wanted = text::FoldCase(pattern);
  const auto matches = [&](const std::string& name) {
    return !name.empty() && MatchesPattern(text::FoldCase(name), wanted);
  };
  std::vector<FoundFile> found;
  for (size_t position = 0; position < modules.size(); ++position) {
    const auto first = static_cast<std::ptrdiff_t>(found.size());
    for (const DeliveredFile& file : modules[position].files) {
      if (matches(file.name) || matches(file.shortName)) {
        found.push_back({position, &file});
      }
    }
    std::sort(found.begin() + first, found.end(), [](const FoundFile& a, const FoundFile& b) {
      return std::tie(a.file->name, a.file->key) < std::tie(b.file->name, b.file->key);
    });
  }
  return found;
}

}  // namespace qm::merge
