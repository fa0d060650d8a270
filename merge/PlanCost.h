#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace qm::merge {

/// The cost of a plan: one sum for each goal. Each goal outweighs all later ones. Costs of parts
/// that do not affect one another add up.
struct PlanCost {
  enum Goal : size_t {
    Missing,     ///< requirements that no module of the set satisfies
    Objections,  ///< combinations that must not be merged, and modules of the wrong platform
    Repeats,     ///< modules in addition to the first of each ID
    Carriers,    ///< modules that are needed only for what they carry
    Platforms,   ///< requirements that a module of another platform satisfies
    Languages,   ///< how far a module is from the language of the one that needs it
    Versions,    ///< VersionRank::higherVersions of each module
    Modules,     ///< number of modules
    Order,       ///< VersionRank::modulesBefore of each module
    kGoals
  };

  std::array<std::int64_t, kGoals> sums{};

  std::int64_t& operator[](Goal goal) noexcept { return sums[goal]; }
  std::int64_t operator[](Goal goal) const noexcept { return sums[goal]; }

  PlanCost& operator+=(const PlanCost& other) noexcept { return Add(other, 1); }
  PlanCost& operator-=(const PlanCost& other) noexcept { return Add(other, -1); }

  PlanCost& Add(const PlanCost& other, std::int64_t times) noexcept {
    for (size_t goal = 0; goal < kGoals; ++goal) {
      sums[goal] += times * other.sums[goal];
    }
    return *this;
  }

  friend PlanCost operator+(PlanCost a, const PlanCost& b) noexcept { return a += b; }
  friend PlanCost operator-(PlanCost a, const PlanCost& b) noexcept { return a -= b; }
  friend bool operator<(const PlanCost& a, const PlanCost& b) noexcept { return a.sums < b.sums; }
};

}  // namespace qm::merge
