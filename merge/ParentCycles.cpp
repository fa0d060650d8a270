#include "merge/ParentCycles.h"

namespace qm::merge {

std::vector<std::vector<std::size_t>> FindParentCycles(const std::vector<std::size_t>& parents) {
  std::vector<std::vector<std::size_t>> cycles;
  // Each row belongs to the walk that reaches it first. A walk that comes back to itself has found
  // a cycle.
  std::vector<std::size_t> walks(parents.size(), kNoParent);
  for (std::size_t i = 0; i < parents.size(); ++i) {
    std::size_t at = i;
    while (at != kNoParent && walks[at] == kNoParent) {
      walks[at] = i;
      at = parents[at];
    }
    if (at == kNoParent || walks[at] != i) {
      continue;
    }
    std::vector<std::size_t>& cycle = cycles.emplace_back();
    const std::size_t first = at;
    do {
      cycle.push_back(at);
      at = parents[at];
    } while (at != first);
  }
  return cycles;
}

}  // namespace qm::merge
