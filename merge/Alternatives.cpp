#include "merge/Alternatives.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace qm::merge {

namespace {

/// Returns for each variant how many IDs have it.
std::unordered_map<std::uint64_t, std::size_t> CountIds(const CheckedModules& modules,
                                                        const std::vector<ModuleVariant>& all) {
  std::vector<std::pair<std::uint64_t, std::size_t>> owners;
  owners.reserve(all.size());
  for (const ModuleVariant& one : all) {
    owners.emplace_back(one.variant, modules.IdentityOf(one.module));
  }
  std::sort(owners.begin(), owners.end());
  owners.erase(std::unique(owners.begin(), owners.end()), owners.end());
  std::unordered_map<std::uint64_t, std::size_t> counts;
  for (const auto& [variant, identity] : owners) {
    ++counts[variant];
  }
  return counts;
}

}  // namespace

std::vector<bool> ChooseAlternatives(const CheckedModules& modules,
                                     const std::vector<ModuleVariant>& all) {
  if (modules.IsMerge()) {
    return std::vector<bool>(all.size(), true);
  }
  const auto counts = CountIds(modules, all);
  // A module with several variants agrees as far as the rarest one does. Of shared variants with
  // equal counts, all IDs must take the same one.
  std::unordered_map<std::size_t, std::pair<std::size_t, std::uint64_t>> agreement;
  for (const ModuleVariant& one : all) {
    const std::size_t count = counts.at(one.variant);
    const std::pair shared(count, count > 1 ? one.variant : 0);
    auto& least = agreement.emplace(one.module, shared).first->second;
    least = std::min(least, shared);
  }
  std::unordered_map<std::size_t, std::size_t> chosen;  // module, by what alternatives share
  for (const ModuleVariant& one : all) {
    std::size_t& best = chosen.emplace(modules.IdentityOf(one.module), one.module).first->second;
    best = agreement.at(one.module) > agreement.at(best) ? one.module : best;
  }
  std::vector<bool> isChosen;
  isChosen.reserve(all.size());
  for (const ModuleVariant& one : all) {
    isChosen.push_back(chosen.at(modules.IdentityOf(one.module)) == one.module);
  }
  return isChosen;
}

}  // namespace qm::merge
