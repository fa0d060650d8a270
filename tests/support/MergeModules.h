#pragma once

#include <string>
#include <utility>
#include <vector>

#include "merge/MergeSet.h"

/// A module of a set, whose key is made of ID and language.
inline MergeModule Module(const std::string& id, const std::string& version = "1.0",
                          long language = 1033, std::vector<Requirement> requirements = {}) {
  return {id + ':' + std::to_string(language), id, language, version, std::move(requirements)};
}
