#pragma once

#include "common/WideString.h"
#include "traits/ProjectTraits.h"

namespace qm::traits {

/// Returns how projects of the kind of `traits` refer to a folder of the installer, given by its
/// property: "[SystemFolder]", or "<WINSYSDIR>" in script-based ones. Empty if they have no
/// spelling for it. Case-sensitive.
common::WideString SpellRoot(const ProjectTraits& traits, const common::WideString& property);

}  // namespace qm::traits
