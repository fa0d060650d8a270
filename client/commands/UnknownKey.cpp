#include "client/commands/UnknownKey.h"

#include "client/terminal/NearestNames.h"
#include "client/terminal/Report.h"

namespace mmcat {

void PrintUnknownKey(const std::vector<std::string>& keys, const std::string& key) {
  PrintRemark(key + ": the catalog has no such module" +
              FormatSuggestion(FindNearestNames(key, keys)));
}

}  // namespace mmcat
