#pragma once

#include <map>
#include <set>
#include <string>

/// One line of code for each member, from a text file of lines
///
///     Interface.Member: line of VBScript
///     Interface.Member (C++): line of C++
///
/// in which empty lines and lines that begin with "#" do not count.
class CExamples {
 public:
  struct Example {
    std::string line;
    bool isCpp = false;
  };

  /// Throws std::runtime_error for text of another form, or two examples of one name.
  explicit CExamples(const std::string& text);

  /// The example of a name, which counts as used. Throws std::runtime_error when there is none.
  const Example& Take(const std::string& name);

  /// Throws std::runtime_error that names the examples that nobody took.
  void RequireAllTaken() const;

 private:
  std::map<std::string, Example> m_examples;
  std::set<std::string> m_taken;
};
