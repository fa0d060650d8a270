#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// What the output formats say about a code of findings, from docs/findings.md. Texts are UTF-8.
struct Rule {
  std::string title;  ///< one line, without a full stop
  std::string help;   ///< Markdown
};

/// Returns the rule of a code. A code without a section has itself as title and help.
Rule FindRule(const std::string& code);

/// All codes of findings.
std::vector<std::string> RuleCodes();

}  // namespace mmcat
