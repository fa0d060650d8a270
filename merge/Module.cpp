#include "merge/Module.h"

namespace qm::merge {

DeliveredFile MakeDeliveredFile(std::string_view fileName, std::string_view directory,
                                std::string_view key, std::string_view version,
                                std::optional<long> size) noexcept {
  const std::size_t bar = fileName.find('|');
  const bool hasBoth = bar != std::string_view::npos;
  return {hasBoth ? fileName.substr(bar + 1) : fileName,
          directory,
          hasBoth ? fileName.substr(0, bar) : std::string_view(),
          key,
          version,
          size};
}

const std::string& GetNameInSentence(const Module& module) noexcept {
  static const std::string none = "(a module without ID and path)";
  return !module.moduleId.empty() ? module.key : module.path.empty() ? none : module.path;
}

const std::string& GetFileInSentence(const Module& module) noexcept {
  return module.path.empty() ? GetNameInSentence(module) : module.path;
}

std::string MakeModuleKey(std::string_view moduleId, long language) {
  const std::string number = std::to_string(language);
  std::string key;
  key.reserve(moduleId.size() + 1 + number.size());
  return key.append(moduleId).append(1, ':').append(number);
}

}  // namespace qm::merge
