#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

#include "merge/Checks.h"
#include "merge/Hashing.h"

namespace qm::merge {

namespace {

/// The longest key that a row can have, in bytes, as in ReadModule.

/// A predefined folder that can also be reached from the property of another one.
struct KnownFolder {
  std::string_view path;  ///< normalized
  std::string_view root;
};

// Below WindowsFolder, System32 is another folder for 32-bit programs on 64-bit systems, so it is
// neither of the system folders.
constexpr KnownFolder kKnownFolders[] = {
    {"[programfilesfolder]common files", "[commonfilesfolder]"},
    {"[programfiles64folder]common files", "[commonfiles64folder]"},
    {"[windowsfolder]fonts", "[fontsfolder]"},
    {"[windowsfolder]system", "[system16folder]"},
    {"[startmenufolder]programs", "[programmenufolder]"},
    {"[programmenufolder]startup", "[startupfolder]"},  // after the entry that leads here
};

/// Appends the texts of a column, each text number once. Leaves out texts that are too long for a
/// key, because rows that share a long one would compare it repeatedly.
void AddTexts(const Table* table, const char* column, std::vector<std::string_view>& texts) {
  const auto at = table ? table->FindColumn(column) : std::nullopt;
  if (!at) {
    return;
  }
  std::vector<std::pair<std::uint32_t, std::string_view>> numbered;
  for (size_t row = 0; row < table->RowCount(); ++row) {
    const std::string_view text = table->Text(row, *at);
    if (text.size() <= kMaxKeySize) {
      numbered.emplace_back(table->TextNumber(row, *at), text);
    }
  }
  std::sort(numbered.begin(), numbered.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  const auto end = std::unique(numbered.begin(), numbered.end(),
                               [](const auto& a, const auto& b) { return a.first == b.first; });
  std::transform(numbered.begin(), end, std::back_inserter(texts),
                 [](const auto& one) { return one.second; });
}

}  // namespace

CheckedModules::CheckedModules(const ModuleIndex& set, const std::vector<size_t>& scope,
                               const CheckOptions& options)
    : m_set(set),
      m_scope(scope),
      m_options(options),
      m_isInScope(set.Modules().size()),
      m_identities(set.Modules().size()) {
  for (const size_t position : scope) {
    m_isInScope[position] = true;
    const std::string& id = At(position).moduleId;
    m_identities[position] = id.empty() ? position : set.FindById(id).front();
  }
  // Two records of one file without an ID are one module.
  std::unordered_map<std::string_view, size_t> byPath;
  for (const size_t position : scope) {
    if (At(position).moduleId.empty()) {
      m_identities[position] = byPath.emplace(At(position).path, position).first->second;
    }
  }
}

TargetFolder CheckedModules::Resolve(size_t module, std::string_view directory) const {
  return m_options.resolve
             ? m_options.resolve(module, directory)
             : m_folders.try_emplace(module, At(module)).first->second.Resolve(directory);
}

std::string CheckedModules::Spell(const TargetFolder& folder) const {
  return m_options.spell ? m_options.spell(folder) : FormatTargetFolder(folder);
}

bool CheckedModules::HasRow(std::string_view table, const char* column,
                            std::string_view key) const {
  const auto [found, isNew] = m_keys.try_emplace(table);
  std::vector<std::string_view>& keys = found->second;
  if (isNew) {
    for (const size_t position : m_scope) {
      AddTexts(At(position).FindTable(table), column, keys);
    }
    std::sort(keys.begin(), keys.end());
  }
  return std::binary_search(keys.begin(), keys.end(), key);
}

std::optional<std::string> NormalizeFolder(const TargetFolder& folder) {
  // A property has one value in all modules of a package.
  if (folder.end != FolderEnd::Root && folder.end != FolderEnd::RunTime) {
    return std::nullopt;
  }
  std::string text = folder.root.empty() ? std::string() : '[' + folder.root + ']';
  const size_t rootSize = text.size();
  std::string_view rest = folder.path;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find_first_of("\\/"), rest.size());
    const std::string_view name = rest.substr(0, end);
    if (!name.empty() && name != ".") {
      if (text.size() > rootSize) {
        text += '\\';
      }
      text += name;
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (text.empty()) {
    return std::nullopt;
  }
  text = text::FoldCase(text);
  for (const KnownFolder& known : kKnownFolders) {
    const size_t size = known.path.size();
    if (text.compare(0, size, known.path) == 0 && (text.size() == size || text[size] == '\\')) {
      text = std::string(known.root) + text.substr(std::min(size + 1, text.size()));
    }
  }
  return text;
}

void LimitSeverity(Finding& finding, Severity severity) noexcept {
  finding.severity = std::max(finding.severity, severity);
}

}  // namespace qm::merge
