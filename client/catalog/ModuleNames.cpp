#include "client/catalog/ModuleNames.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/UserPath.h"
#include "client/catalog/Wildcards.h"
#include "common/Path.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

constexpr char kExtension[] = ".msm";

bool StartsWith(std::string_view text, std::string_view start) noexcept {
  return text.substr(0, start.size()) == start;
}

bool EndsWith(std::string_view text, std::string_view end) noexcept {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// A path in a form in which equal paths are equal texts.
std::string NormalizePath(const std::string& path) {
  std::string normal = qm::text::FoldCase(path);
  std::replace(normal.begin(), normal.end(), '\\', '/');
  return normal;
}

/// A word that is the beginning of IDs, case-folded.
struct IdWord {
  std::string start;
  std::string language;  ///< with its colon; empty for every language
};

IdWord SplitIdWord(const std::string& word) {
  const std::string folded = qm::text::FoldCase(word);
  const size_t colon = folded.rfind(':');
  const bool hasLanguage =
      colon != std::string::npos &&
      folded.find_first_not_of("0123456789", colon + (folded[colon + 1] == '-' ? 2 : 1)) ==
          std::string::npos;
  return hasLanguage ? IdWord{folded.substr(0, colon), folded.substr(colon)} : IdWord{folded, ""};
}

NameMatch MatchIdStart(const std::vector<NamedModule>& modules, const std::string& word) {
  const IdWord wanted = SplitIdWord(word);
  NameMatch all;
  NameMatch named;  // those whose ID is the word followed by a GUID
  std::set<std::string> ids;
  std::set<std::string> namedIds;
  for (size_t i = 0; i < modules.size(); ++i) {
    const std::string id = qm::text::FoldCase(modules[i].moduleId);
    if (id.empty() || !StartsWith(id, wanted.start) ||
        (wanted.language.size() > 1 && !EndsWith(modules[i].key, wanted.language))) {
      continue;
    }
    all.modules.push_back(i);
    ids.insert(id);
    if (id.substr(0, id.find('.')) == wanted.start) {
      named.modules.push_back(i);
      namedIds.insert(id);
    }
  }
  if (namedIds.size() == 1) {
    return named;
  }
  if (ids.size() > 1) {
    for (const size_t position : all.modules) {
      all.candidates.push_back(modules[position].key);
    }
    all.modules.clear();
  }
  return all;
}

NameMatch MatchFile(const std::vector<NamedModule>& modules, const std::string& word) {
  std::string wanted = NormalizePath(word);
  wanted += EndsWith(wanted, kExtension) ? "" : kExtension;
  const std::string full =
      NormalizePath(SpellPath(qm::text::ToUtf8(qm::common::ResolveFullPath(ToSystemPath(word)))));
  NameMatch match;
  for (size_t i = 0; i < modules.size(); ++i) {
    const std::string path = NormalizePath(modules[i].path);
    if (path == full && !path.empty()) {
      return {{i}, {}};
    }
    if (path == wanted || EndsWith(path, '/' + wanted)) {
      match.modules.push_back(i);
      match.candidates.push_back(modules[i].path);
    }
  }
  if (match.modules.size() == 1) {
    match.candidates.clear();
  } else {
    match.modules.clear();
  }
  return match;
}

NameMatch MatchDisplayName(const std::vector<NamedModule>& modules, const std::string& word) {
  const std::string wanted = qm::text::FoldCase(word);
  NameMatch match;
  std::set<std::string> ids;
  for (size_t i = 0; i < modules.size(); ++i) {
    if (!modules[i].moduleId.empty() && qm::text::FoldCase(modules[i].displayName) == wanted) {
      match.modules.push_back(i);
      match.candidates.push_back(modules[i].key);
      ids.insert(qm::text::FoldCase(modules[i].moduleId));
    }
  }
  (ids.size() > 1 ? match.modules.clear() : match.candidates.clear());
  return match;
}

}  // namespace

NameMatch MatchName(const std::vector<NamedModule>& modules, const std::string& word) {
  const std::string folded = qm::text::FoldCase(word);
  const bool isFile =
      folded.find_first_of("\\/") != std::string::npos || EndsWith(folded, kExtension);
  if (word.empty()) {
    return {};
  }
  NameMatch byId = isFile ? NameMatch() : MatchIdStart(modules, word);
  if (!byId.modules.empty()) {
    return byId;
  }
  NameMatch byFile = MatchFile(modules, word);
  if (!byFile.modules.empty() || !byFile.candidates.empty()) {
    return byFile;
  }
  return byId.candidates.empty() ? MatchDisplayName(modules, word) : byId;
}

bool MatchesPattern(const std::string& pattern, const NamedModule& module) {
  return MatchesPattern(pattern, module.key) || MatchesPattern(pattern, module.moduleId) ||
         MatchesPattern(pattern, GetFileName(module.path));
}

std::vector<size_t> FindMatching(const std::vector<NamedModule>& modules,
                                 const std::string& pattern) {
  std::vector<size_t> positions;
  for (size_t i = 0; i < modules.size(); ++i) {
    if (MatchesPattern(pattern, modules[i])) {
      positions.push_back(i);
    }
  }
  return positions;
}

std::vector<size_t> FindNamed(const std::vector<NamedModule>& modules, const std::string& word) {
  return HasWildcard(word) ? FindMatching(modules, word) : MatchName(modules, word).modules;
}

}  // namespace mmcat
