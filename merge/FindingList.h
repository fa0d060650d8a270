#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "merge/Findings.h"

namespace qm::merge {

/// Collects the findings of a check up to a limit for each code, so that no set produces more of
/// them than anybody can read. Findings above a limit are only counted.
class FindingList {
 public:
  /// The most findings that are listed for one code. An additional one states how many more there
  /// are.
  static constexpr std::size_t kMaxFindings = 1000;
  /// The most modules that one finding names. Its text states how many more there are.
  static constexpr std::size_t kMaxModules = 16;

  explicit FindingList(const ModuleIndex& set) : m_set(set) {}

  /// Reserves a place for a finding of this code. Returns false if the list is full; the finding is
  /// then counted as unlisted. Call this before doing any work for a finding.
  bool Admit(const char* code);

  /// Returns whether the list of a code is full. Unlike Admit, counts nothing.
  bool IsFull(const char* code) const;

  /// Records that a search ended early because the list was full.
  void EndSearch(const char* code) { m_counts[code].isComplete = false; }

  /// Adds an admitted finding, which names the first kMaxModules of `modules`. The reference is
  /// valid until the next call.
  Finding& Add(const char* code, const std::vector<std::size_t>& modules, std::string text);

  /// A cell of a table that a finding is about.
  struct CellInRow {
    std::size_t module;
    std::string_view table;
    std::string_view key;  ///< of the row; may be empty
    const char* column;
    std::string_view value;
  };

  /// Like Add, for a finding about a cell. Shortens the key and the value.
  Finding& AddForCell(const char* code, const CellInRow& cell, std::string text);

  /// Like AddForCell, for a cell of the File table: "A:1033 delivers a.dll with ...".
  Finding& AddForFile(const char* code, std::size_t module, const DeliveredFile& file,
                      const char* column, std::string_view value, const std::string& problem);

  /// Returns the findings in the order of SortFindings. Can be called once.
  std::vector<Finding> Take();

  const std::string& NameOf(std::size_t position) const {
    return GetNameInSentence(m_set.Modules()[position]);
  }

  /// Joins the names of the modules that a finding can name: "A, B and 12 more".
  std::string JoinNames(const std::vector<std::size_t>& modules, const char* between) const;

 private:
  struct Count {
    std::size_t listed = 0;
    std::size_t unlisted = 0;
    bool isComplete = true;  ///< whether `unlisted` counts all
  };

  const ModuleIndex& m_set;
  std::map<std::string_view, Count> m_counts;
  std::vector<Finding> m_findings;
};

/// Joins the first FindingList::kMaxModules texts in the same way.
std::string JoinSome(const std::vector<std::string>& texts, const char* between);

/// Puts a text into quotation marks, shortened to 200 bytes.
std::string QuoteShort(std::string_view text);

/// Shortens a text to 200 bytes, plus "..." if anything was cut off. Never cuts a character in two.
std::string Shorten(std::string_view text);

}  // namespace qm::merge
