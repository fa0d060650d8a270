#include "client/commands/ModuleChain.h"

namespace mmcat {

std::string FormatChain(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& chain) {
  std::string text;
  for (const size_t position : chain) {
    text += (text.empty() ? "" : " -> ") + modules[position].key;
  }
  return text;
}

Json MakeKeysJson(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& positions) {
  Json keys = Json::array();
  for (const size_t position : positions) {
    keys.push_back(modules[position].key);
  }
  return keys;
}

}  // namespace mmcat
