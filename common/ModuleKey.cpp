#include "common/ModuleKey.h"

#include <cstdlib>

namespace qm::common {

WideString MakeModuleKey(const WideString& id, long language) {
  // Built by hand: formatting would take as long as everything else that the catalog itself does
  // for a module.
  wchar_t number[12];
  ::_ltow(language, number, 10);
  const std::wstring_view parts[] = {id.c_str(), L":", number};
  return WideString::Build(parts[0].size() + 1 + parts[2].size(), [&](wchar_t* key) {
    size_t length = 0;
    for (const std::wstring_view part : parts) {
      length += part.copy(key + length, part.size());
    }
    return length;
  });
}

}  // namespace qm::common
