#include "catalog/ModuleQuery.h"

#include <windows.h>

#include <array>
#include <initializer_list>
#include <optional>
#include <string>

#include "catalog/CatalogState.h"
#include "common/IgnoringCase.h"

namespace qm::catalog {

namespace {

bool HasLanguage(const module::CCacheMSM& record, const common::WideString& language) {
  return common::EqualsIgnoringCase(
      common::WideString::Format(L"%d", static_cast<int>(record.Language())), language);
}

bool Matches(const module::CCacheMSM& record, const ModuleQuery& query) {
  return common::EqualsIgnoringCase(record.ModuleID(), query.moduleId) &&
         (query.language.empty() || HasLanguage(record, query.language)) &&
         (query.version.empty() || common::EqualsIgnoringCase(record.Version(), query.version));
}

std::wstring LowerCaseKey(std::initializer_list<std::wstring_view> parts) {
  std::wstring key;
  for (const std::wstring_view part : parts) {
    key += part;
  }
  ::CharLowerW(key.data());
  return key;
}

/// The keys by which a match is looked up in the key table of the process: its own, and those of
/// the same module for 64-bit processors.
class LookupKeys {
 public:
  explicit LookupKeys(const ModuleQuery& query)
      : m_keys{LowerCaseKey({query.moduleId, L":", VersionOf(query)}),
               LowerCaseKey({query.moduleId, L":", VersionOf(query), L"x64"}),
               LowerCaseKey({query.moduleId, L":i64"})} {}

  /// Returns whether the process has read a module with one of these keys. The result does not
  /// affect the match.
  bool AreKnown(CatalogState& state) const {
    bool known = false;
    for (const std::wstring& key : m_keys) {
      known = state.keys.Contains(key, state.records) || known;
    }
    return known;
  }

 private:
  static std::wstring_view VersionOf(const ModuleQuery& query) noexcept {
    const std::wstring_view version = query.version;
    return version.empty() ? L"0" : version;
  }

  std::array<std::wstring, 3> m_keys;
};

}  // namespace

ModuleQuery ParseModuleKey(std::wstring_view key, std::wstring_view version) {
  const size_t colon = key.find(L':');
  ModuleQuery query;
  query.moduleId = key.substr(0, colon);
  if (colon != std::wstring_view::npos) {
    query.language = key.substr(colon + 1);
  }
  query.version = version;
  return query;
}

CatalogModules FindMatchingModules(const CatalogModules& modules, const ModuleQuery& query) {
  CatalogModules matches(0);
  std::optional<LookupKeys> keys;
  for (const auto& record : modules.Records()) {
    if (Matches(*record, query)) {
      if (!keys) {
        keys.emplace(query);
      }
      keys->AreKnown(CatalogState::Instance());
      matches.Add(record);
    }
  }
  return matches;
}

}  // namespace qm::catalog
