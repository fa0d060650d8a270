#pragma once

#include <optional>
#include <string_view>
#include <unordered_map>

#include "merge/Module.h"

namespace qm::merge {

/// The order in which the installer runs the actions of a module, in an installation that shows
/// dialogs: first the user interface sequences, then the execute sequences.
class ActionSequence {
 public:
  struct Place {
    /// Lower positions run earlier. An action that is placed before or after another one is close
    /// to it. 0 if the position is unknown, such as that of an action placed after an unknown one.
    double position;
    bool isConditional;
  };

  explicit ActionSequence(const Module& module);

  /// Returns whether the module has sequence tables at all.
  bool IsKnown() const noexcept { return m_isKnown; }

  /// Returns where an action runs; nothing if it does not run: no table names it, it has no place,
  /// or it runs only at the end of an installation (negative numbers).
  std::optional<Place> Find(std::string_view action) const;

  /// The position at which the installer resolves the paths of the Directory table. Properties of
  /// directories that are set later do not change these paths.
  double CostFinalize() const noexcept { return m_costFinalize; }

 private:
  class Reader;

  bool m_isKnown = false;
  std::unordered_map<std::string_view, Place> m_places;
  double m_costFinalize;
};

}  // namespace qm::merge
