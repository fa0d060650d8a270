#include "catalog/ModuleMatcher.h"

#include <windows.h>

#include <array>
#include <initializer_list>
#include <optional>
#include <string>

#include "catalog/CatalogState.h"
#include "common/Bstr.h"
#include "common/IgnoringCase.h"

namespace {

bool HasLanguage(const CCacheMSM& record, const CWideString& language) {
  return EqualsIgnoringCase(CWideString::Format(L"%d", static_cast<int>(record.Language())),
                            language);
}

bool Matches(const CCacheMSM& record, const ModuleQuery& query) {
  return EqualsIgnoringCase(record.ModuleID(), query.moduleId) &&
         (query.language.empty() || HasLanguage(record, query.language)) &&
         (query.version.empty() || EqualsIgnoringCase(record.Version(), query.version));
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

  /// Whether the process has read a module with one of these keys. The result does not affect the
  /// match.
  bool AreKnown(CCatalogState& state) const {
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

ModuleQuery QueryOfKey(BSTR key, BSTR version) {
  const std::wstring_view text = ViewOf(key);
  const size_t colon = text.find(L':');
  ModuleQuery query;
  query.moduleId = text.substr(0, colon);
  if (colon != std::wstring_view::npos) {
    query.language = text.substr(colon + 1);
  }
  query.version = ViewOf(version);
  return query;
}

CModuleList MatchModules(const CModuleList& modules, const ModuleQuery& query) {
  CModuleList matches(0);
  std::optional<LookupKeys> keys;
  for (const auto& record : modules.Records()) {
    if (Matches(*record, query)) {
      if (!keys) {
        keys.emplace(query);
      }
      keys->AreKnown(CCatalogState::Instance());
      matches.Add(record);
    }
  }
  return matches;
}
