#pragma once

#include <optional>
#include <string_view>
#include <unordered_map>

#include "merge/Module.h"

namespace qm::merge {

/// When the installer runs the actions of a module, in an installation that shows dialogs: first
/// the user interface sequences, then the execute sequences.
class ActionSequence {
 public:
  struct Place {
    /// Lower ones run earlier. An action before or after another has a place close to it. 0 if the
    /// other action has no number in the module and is not one of the installer's.
    double position;
    bool isConditional;
  };

  explicit ActionSequence(const Module& module);

  /// Returns whether the module has sequence tables at all.
  bool IsKnown() const noexcept { return m_isKnown; }

  /// Returns where an action runs. Nothing if it does not: no table names it, it has no place, or
  /// it runs only at the end of an installation (negative numbers).
  std::optional<Place> Find(std::string_view action) const;

  /// The place at which the installer makes paths of the Directory table. The properties of
  /// directories have no effect on these later.
  double CostFinalize() const noexcept { return m_costFinalize; }

 private:
  class Reader;

  bool m_isKnown = false;
  std::unordered_map<std::string_view, Place> m_places;
  double m_costFinalize;
};

}  // namespace qm::merge
