#include "merge/FileSearch.h"

#include <algorithm>
#include <limits>
#include <map>
#include <tuple>
#include <utility>

#include "text/Ascii.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

/// Removes the first character of UTF-8 text.
void RemoveFirstCharacter(std::string_view& text) noexcept {
  do {
    text.remove_prefix(1);
  } while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0U) == 0x80U);
}

/// A pattern that ignores case.
class NamePattern {
 public:
  explicit NamePattern(std::string_view pattern) : m_pattern(text::FoldCase(pattern)) {}

  bool Matches(std::string_view name) {
    if (name.empty()) {
      return false;
    }
    if (!text::IsAscii(name)) {
      return MatchesPattern(text::FoldCase(name), m_pattern);
    }
    m_folded.assign(name);  // reuses its memory, because nearly all names are ASCII
    for (char& character : m_folded) {
      if (character >= 'A' && character <= 'Z') {
        character = static_cast<char>(character - 'A' + 'a');
      }
    }
    return MatchesPattern(m_folded, m_pattern);
  }

  bool Matches(const DeliveredFile& file) {
    return m_pattern == "*" || Matches(file.name) || Matches(file.shortName);
  }

 private:
  std::string m_pattern;
  std::string m_folded;
};

/// Collects the deliverers of files.
class DelivererList {
 public:
  explicit DelivererList(const ModuleIndex& set) : m_set(set) {}

  void AddFile(size_t module, const DeliveredFile& file) {
    const std::string name = text::FoldCase(file.name);
    Deliverer& deliverer = FindOrAdd(name, module, m_set.Modules()[module].key);
    if (deliverer.copies.empty()) {
      deliverer.file = file.name;
    }
    deliverer.copies.push_back(&file);
    if (!file.shortName.empty()) {
      m_longNames.emplace(std::pair(text::FoldCase(file.shortName), module), name);
    }
  }

  /// Adds an entry. All files must have been added before.
  void AddEntry(const IndexEntry& entry) {
    const std::string name = text::FoldCase(entry.name);
    const std::vector<size_t> positions = m_set.FindByKey(entry.moduleKey);
    bool isDelivered = false;
    for (const size_t position : positions) {
      if (Deliverer* const deliverer = FindDelivering(name, position)) {
        AddEntry(entry, *deliverer, IndexFault::None);
        isDelivered = true;
      }
    }
    if (isDelivered) {
      return;
    }
    for (const size_t position : positions) {
      const Module& module = m_set.Modules()[position];
      const bool isKnown = !module.path.empty() && module.failure.empty();
      AddEntry(entry, FindOrAdd(name, position, module.key),
               isKnown ? IndexFault::NotDelivered : IndexFault::None);
    }
    if (positions.empty()) {
      AddEntry(entry, FindOrAdd(name, std::nullopt, entry.moduleKey), IndexFault::AbsentModule);
    }
  }

  std::vector<Deliverer> Take() {
    std::vector<Deliverer> list;
    list.reserve(m_deliverers.size());
    for (auto& [place, deliverer] : m_deliverers) {
      std::sort(deliverer.copies.begin(), deliverer.copies.end(),
                [](const DeliveredFile* a, const DeliveredFile* b) { return a->key < b->key; });
      list.push_back(std::move(deliverer));
    }
    return list;
  }

 private:
  /// File, position of the module (SIZE_MAX if it is absent), key of an absent module. The result
  /// is sorted by these.
  using Place = std::tuple<std::string, size_t, std::string>;

  static size_t MakePlace(std::optional<size_t> module) noexcept {
    return module.value_or(std::numeric_limits<size_t>::max());
  }

  /// Returns the deliverer of a long or short name if the module's File table has it, else null.
  Deliverer* FindDelivering(const std::string& name, size_t module) {
    auto found = m_deliverers.find({name, module, ""});
    if (found == m_deliverers.end()) {
      const auto longName = m_longNames.find({name, module});
      if (longName == m_longNames.end()) {
        return nullptr;
      }
      found = m_deliverers.find({longName->second, module, ""});
    }
    return found->second.copies.empty() ? nullptr : &found->second;
  }

  Deliverer& FindOrAdd(const std::string& name, std::optional<size_t> module,
                       const std::string& key) {
    Deliverer& deliverer =
        m_deliverers[{name, MakePlace(module), module ? std::string() : text::FoldCase(key)}];
    if (deliverer.moduleKey.empty()) {
      deliverer.module = module;
      deliverer.moduleKey = key;
    }
    return deliverer;
  }

  static void AddEntry(const IndexEntry& entry, Deliverer& deliverer, IndexFault fault) {
    if (deliverer.file.empty()) {
      deliverer.file = entry.name;
    }
    deliverer.entries.push_back(&entry);
    deliverer.fault = fault;
  }

  const ModuleIndex& m_set;
  std::map<Place, Deliverer> m_deliverers;
  std::map<std::pair<std::string, size_t>, std::string> m_longNames;  ///< by short name and module
};

}  // namespace

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

std::vector<FoundFile> FindFiles(const std::vector<Module>& modules, std::string_view pattern) {
  NamePattern wanted(pattern);
  std::vector<FoundFile> found;
  for (size_t position = 0; position < modules.size(); ++position) {
    const auto first = static_cast<std::ptrdiff_t>(found.size());
    for (const DeliveredFile& file : modules[position].files) {
      if (wanted.Matches(file)) {
        found.push_back({position, &file});
      }
    }
    std::sort(found.begin() + first, found.end(), [](const FoundFile& a, const FoundFile& b) {
      return std::tie(a.file->name, a.file->key) < std::tie(b.file->name, b.file->key);
    });
  }
  return found;
}

std::vector<Deliverer> FindDeliverers(const ModuleIndex& set,
                                      const std::vector<IndexEntry>& entries,
                                      std::string_view pattern) {
  DelivererList list(set);
  for (const FoundFile& found : FindFiles(set.Modules(), pattern)) {
    list.AddFile(found.module, *found.file);
  }
  NamePattern wanted(pattern);
  for (const IndexEntry& entry : entries) {
    if (wanted.Matches(entry.name)) {
      list.AddEntry(entry);
    }
  }
  return list.Take();
}

}  // namespace qm::merge
