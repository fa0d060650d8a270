#include "common/ModuleKey.h"

#include <cstdlib>

#include "common/LastError.h"

CWideString MakeModuleKey(const CWideString& id, long language) {
  const CLastErrorKeeper keeper;
  // By hand: formatting would take as long as all else that a catalog does for a module itself.
  constexpr size_t kLongestLanguage = 12;
  wchar_t number[kLongestLanguage];
  ::_ltow(language, number, 10);
  std::wstring key;
  key.reserve(id.length() + kLongestLanguage);
  key.append(id.c_str()).append(1, L':').append(number);
  return CWideString(std::move(key));
}
