#include "merge/ActionSequence.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qm::merge {

namespace {

/// The usual sequence numbers of the installer's actions around costing, for modules that refer to
/// these actions without numbering them.
constexpr struct {
  std::string_view action;
  double position;
} kUsualPositions[] = {
    {"FindRelatedProducts", 25}, {"AppSearch", 50},           {"LaunchConditions", 100},
    {"CCPSearch", 500},          {"RMCCPSearch", 600},        {"ValidateProductID", 700},
    {"CostInitialize", 800},     {"FileCost", 900},           {"CostFinalize", 1000},
    {"InstallValidate", 1400},   {"InstallInitialize", 1500}, {"InstallFiles", 4000},
    {"InstallFinalize", 6600},
};
constexpr std::string_view kCostFinalize = "CostFinalize";

/// Offset of the user interface sequences, which run before the execute sequences.
constexpr double kUserInterface = -1e6;

std::optional<double> FindUsualPosition(std::string_view action) noexcept {
  const auto* const found = std::find_if(std::begin(kUsualPositions), std::end(kUsualPositions),
                                         [&](const auto& usual) { return usual.action == action; });
  return found == std::end(kUsualPositions) ? std::nullopt : std::optional(found->position);
}

}  // namespace

/// Reads one table.
class ActionSequence::Reader {
 public:
  Reader(const Table& table, double offset)
      : m_table(table),
        m_offset(offset),
        m_action(table.FindColumn("Action")),
        m_number(table.FindColumn("Sequence")),
        m_base(table.FindColumn("BaseAction")),
        m_after(table.FindColumn("After")),
        m_condition(table.FindColumn("Condition")) {}

  /// Adds the actions of the table. One without a condition replaces a conditional one that is
  /// already in `places`; otherwise the first one is kept.
  void AddTo(std::unordered_map<std::string_view, Place>& places) {
    if (!m_action) {
      return;
    }
    for (std::size_t row = 0; row < m_table.RowCount(); ++row) {
      m_rows.emplace(m_table.Text(row, *m_action), row);
    }
    for (const auto& [action, row] : m_rows) {
      const std::optional<double> position = FindPosition(row);
      const bool isConditional = m_condition && !m_table.Text(row, *m_condition).empty();
      if (position) {
        const auto [place, isNew] = places.emplace(action, Place{*position, isConditional});
        if (!isNew && place->second.isConditional && !isConditional) {
          place->second = {*position, false};
        }
      }
    }
  }

 private:
  /// Returns the position of a row. Follows a limited number of base actions: real modules have a
  /// few, and a long chain would be followed from each of its actions.
  std::optional<double> FindPosition(std::size_t row) const {
    constexpr int kMostBases = 50;
    double shift = 0;
    for (int bases = 0; bases < kMostBases; ++bases) {
      const auto number = m_number ? m_table.Number(row, *m_number) : std::nullopt;
      if (number) {
        return *number > 0 ? std::optional(*number + shift + m_offset) : std::nullopt;
      }
      const std::string_view base = m_base ? m_table.Text(row, *m_base) : std::string_view();
      if (base.empty()) {
        return m_number && m_base ? std::nullopt : std::optional(0.0);
      }
      const bool isAfter = m_after && m_table.Number(row, *m_after).value_or(0) != 0;
      // The step next to the numbered base is added last and has the greatest weight.
      shift = (shift + (isAfter ? 1 : -1)) / 4;
      const auto found = m_rows.find(base);
      if (found == m_rows.end()) {
        const auto usual = FindUsualPosition(base);
        return usual ? *usual + shift + m_offset : 0.0;
      }
      row = found->second;
    }
    return 0.0;
  }

  const Table& m_table;
  double m_offset;
  std::optional<std::size_t> m_action;
  std::optional<std::size_t> m_number;
  std::optional<std::size_t> m_base;
  std::optional<std::size_t> m_after;
  std::optional<std::size_t> m_condition;
  std::unordered_map<std::string_view, std::size_t> m_rows;  ///< by action
};

ActionSequence::ActionSequence(const Module& module)
    : m_costFinalize(*FindUsualPosition(kCostFinalize)) {
  const struct {
    const char* table;
    double offset;
  } tables[] = {{"ModuleInstallExecuteSequence", 0},
                {"InstallExecuteSequence", 0},
                {"ModuleInstallUISequence", kUserInterface},
                {"InstallUISequence", kUserInterface}};
  for (const auto& [name, offset] : tables) {
    if (const Table* const table = module.FindTable(name)) {
      m_isKnown = m_isKnown || table->FindColumn("Action");
      Reader(*table, offset).AddTo(m_places);
    }
  }
  if (const auto place = Find(kCostFinalize); place && place->position > 0) {
    m_costFinalize = place->position;
  }
}

std::optional<ActionSequence::Place> ActionSequence::Find(std::string_view action) const {
  const auto found = m_places.find(action);
  return found == m_places.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace qm::merge
