#pragma once

#include "analysis/SetData.h"
#include "merge/Findings.h"

namespace qm::analysis {

/// Makes the options of a check of modules of `set`, which must outlive them. Findings spell
/// folders as the active project does.
inline merge::CheckOptions MakeCheckOptions(const SetData& set) {
  merge::CheckOptions options;
  options.resolve = [&](size_t module, std::string_view directory) {
    return set.ResolveFolder(module, directory);
  };
  options.spell = SetData::SpellFolder;
  return options;
}

}  // namespace qm::analysis
