#include "catalog/ModuleMatcher.h"

#include <cwchar>

#include "common/Bstr.h"

namespace {

/// Comparing lengths first spares most comparisons of text.
bool IsEqualIgnoringCase(const CWideString& a, const CWideString& b) noexcept {
  return a.length() == b.length() && ::_wcsicmp(a.c_str(), b.c_str()) == 0;
}

bool HasLanguage(const CCacheMSM& record, const CWideString& language) {
  return IsEqualIgnoringCase(CWideString::Format(L"%d", static_cast<int>(record.Language())),
                             language);
}

bool Matches(const CCacheMSM& record, const ModuleQuery& query) {
  return IsEqualIgnoringCase(record.ModuleID(), query.moduleId) &&
         (query.language.empty() || HasLanguage(record, query.language)) &&
         (query.version.empty() || IsEqualIgnoringCase(record.Version(), query.version));
}

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
  for (const auto& record : modules.Records()) {
    if (Matches(*record, query)) {
      matches.Add(record);
    }
  }
  return matches;
}
