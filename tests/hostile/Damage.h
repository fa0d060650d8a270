#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/hostile/ModuleMap.h"

namespace qm::tests {

/// The same numbers for the same seed, on every machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_state(seed) {}

  std::uint64_t Next();

  /// A number below `limit`; 0 if that is 0.
  std::size_t Below(std::size_t limit) {
    return limit == 0 ? 0 : static_cast<std::size_t>(Next() % limit);
  }

  /// True once in `times`.
  bool Once(std::size_t times) { return Below(times) == 0; }

 private:
  std::uint64_t m_state;
};

/// A sound module.
struct Base {
  std::string name;
  Bytes bytes;
  ModuleMap map;
};

/// A module that was damaged, and how: "PenHolder.msm: cut, rows".
struct Damaged {
  Bytes bytes;
  std::string how;
};

/// Damages one of `bases` in one way or several, which `random` chooses.
Damaged Damage(const std::vector<Base>& bases, Random& random);

}  // namespace qm::tests
