#include "client/commands/ModuleChain.h"

namespace mmcat {

std::string FormatChain(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& chain) {
  std::string text;
  for (const size_t position : chain) {
    text += (text.empty() ? "" : " -> ") + modules[position].key;
  }
  return text;
}

std::string FormatChain(const std::vector<ModuleFacts>& modules, const UserFacts& user,
                        size_t needed) {
  constexpr size_t kMost = 8;
  if (user.chainLength <= kMost + 1) {
    return FormatChain(modules, user.chain);
  }
  const auto first = user.chain.begin();
  return FormatChain(modules, {first, first + kMost - 1}) + " -> (" +
         std::to_string(user.chainLength - kMost) + " more) -> " + modules[needed].key;
}

Json MakeKeysJson(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& positions) {
  Json keys = Json::array();
  for (const size_t position : positions) {
    keys.push_back(modules[position].key);
  }
  return keys;
}

}  // namespace mmcat
