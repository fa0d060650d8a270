#include "catalog/ModuleMatcher.h"

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
