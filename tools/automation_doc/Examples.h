#pragma once

#include <map>
#include <set>
#include <string>

namespace qm::docs {

/// One line of code for each member, from a text file of lines
///
///     Interface.Member: line of VBScript
///     Interface.Member (C++): line of C++
///
/// Empty lines and lines that begin with "#" are ignored.
class Examples {
 public:
  struct Example {
    std::string line;
    bool isCpp = false;
  };

  /// Throws std::runtime_error for text of another form, or for two examples of one name.
  explicit Examples(const std::string& text);

  /// Returns the example of a name and marks it as used. Throws std::runtime_error if it does not
  /// exist.
  const Example& Take(const std::string& name);

  /// Throws std::runtime_error if an example has not been taken.
  void RequireAllTaken() const;

 private:
  std::map<std::string, Example> m_examples;
  std::set<std::string> m_taken;
};

}  // namespace qm::docs
