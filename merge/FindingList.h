#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "merge/Findings.h"

namespace qm::merge {

/// Collects the findings of a check within bounds, so that no set makes more of them than anybody
/// can read. What is beyond a bound is counted.
class FindingList {
 public:
  /// Findings that are listed for one code. A last one tells how many more there are.
  static constexpr std::size_t kMaxFindings = 1000;
  /// Modules that one finding names. Its text tells how many more there are.
  static constexpr std::size_t kMaxModules = 16;

  explicit FindingList(const ModuleIndex& set) : m_set(set) {}

  /// Returns whether a finding of this code will still be listed; counts it otherwise. Ask this
  /// before work is done for a finding.
  bool Admit(const char* code);

  /// The same without counting: for a search that ends where the list is full.
  bool IsFull(const char* code) const;

  /// Records that a search ended where the list was full.
  void EndSearch(const char* code) { m_counts[code].isComplete = false; }

  /// Adds an admitted finding, which names the first kMaxModules of `modules`. The reference is
  /// valid until the next call.
  Finding& Add(const char* code, const std::vector<std::size_t>& modules, std::string text);

  /// A cell of a table that a finding is about.
  struct CellInRow {
    std::size_t module;
    std::string_view table;
    std::string_view key;  ///< of the row; empty if it is of no use
    const char* column;
    std::string_view value;
  };

  /// The same for a finding about a cell, whose texts it has shortened.
  Finding& AddForCell(const char* code, const CellInRow& cell, std::string text);

  /// The same for a column of a row of the File table: "A:1033 delivers a.dll with ...".
  Finding& AddForFile(const char* code, std::size_t module, const DeliveredFile& file,
                      const char* column, std::string_view value, const std::string& problem);

  /// Returns the findings in their order.
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

/// Joins texts as above, for any kind of text.
std::string JoinSome(const std::vector<std::string>& texts, const char* between);

/// Puts a text into quotation marks, shortened to 200 bytes.
std::string QuoteShort(std::string_view text);

/// Shortens a text to 200 bytes, with "..." at its end.
std::string Shorten(std::string_view text);

}  // namespace qm::merge
