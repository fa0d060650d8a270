#pragma once

#include <string>
#include <utility>
#include <vector>

#include "merge/MergeSet.h"

namespace qm::tests {

/// A module of a set, whose key is made of ID and language.
inline merge::MergeModule Module(const std::string& id, const std::string& version = "1.0",
                                 long language = 1033,
                                 std::vector<merge::Requirement> requirements = {}) {
  return {id + ':' + std::to_string(language), id, language, version, std::move(requirements)};
}

}  // namespace qm::tests
