#pragma once

#include <set>
#include <string>
#include <utility>

#include "client/catalog/ModuleSet.h"

namespace mmcat {

/// Explains what a word is that was meant as a module of the catalog, and which command fits it
/// better. It may be a folder, a module file that the catalog does not have, another file, or a
/// file that modules deliver. `command` is the command with its arguments, such as "deps KEY".
/// Empty if the word looks like a name.
std::string AdviseOnFile(const std::string& word, const std::string& command);

/// Suggests names of files in the modules of a set. Reads these names once, when first needed.
class FileSuggestions {
 public:
  /// The set must outlive this object.
  explicit FileSuggestions(const ModuleSet& set) : m_set(set) {}

  /// The end of a remark on a word that is not the name of a file: the files with this in their
  /// names, or else those with the nearest names. Empty for all but the first ten words.
  std::string Suggest(const std::string& word);

 private:
  void ReadNames();

  const ModuleSet& m_set;
  std::set<std::pair<std::string, std::string>> m_names;  ///< long and short
  size_t m_words = 0;
};

}  // namespace mmcat
