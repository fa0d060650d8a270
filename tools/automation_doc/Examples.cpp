#include "tools/automation_doc/Examples.h"

#include <sstream>
#include <stdexcept>

namespace qm::docs {

Examples::Examples(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    const size_t colon = line.find(": ");
    if (colon == std::string::npos) {
      throw std::runtime_error("this is no example: " + line);
    }
    std::string name = line.substr(0, colon);
    Example example{line.substr(colon + 2), false};
    constexpr char kCpp[] = " (C++)";
    if (const size_t found = name.find(kCpp); found != std::string::npos) {
      name.resize(found);
      example.isCpp = true;
    }
    if (!m_examples.emplace(name, std::move(example)).second) {
      throw std::runtime_error("two examples of " + name);
    }
  }
}

const Examples::Example& Examples::Take(const std::string& name) {
  const auto found = m_examples.find(name);
  if (found == m_examples.end()) {
    throw std::runtime_error("there is no example of " + name);
  }
  m_taken.insert(name);
  return found->second;
}

void Examples::RequireAllTaken() const {
  for (const auto& [name, example] : m_examples) {
    if (m_taken.count(name) == 0) {
      throw std::runtime_error("an example of what is not there: " + name);
    }
  }
}

}  // namespace qm::docs
