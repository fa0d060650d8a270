#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "merge/FindingList.h"

namespace qm::merge {

/// A row of some module that refers to another row of its table by the key of that row.
struct LinkedRow {
  std::size_t module;
  std::string_view key;
  std::string_view parent;  ///< key of the other row; empty if it refers to no row
};

/// What a finding about a cycle says.
struct CycleDescription {
  const char* code;
  std::string_view table;
  const char* column;  ///< which refers to the other row
  const char* text;    ///< how the rows are related; their keys and modules follow
};

/// Adds a finding for each cycle that only a merge closes: rows of several modules form it in the
/// merged table, which has the first row of each key. Leaves out cycles that touch one which a
/// module has on its own.
void AddMergedCycles(const std::vector<LinkedRow>& rows, const CycleDescription& description,
                     FindingList& findings);

}  // namespace qm::merge
