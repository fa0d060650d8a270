#include "analysis/LoadFailure.h"

#include <algorithm>

#include "text/Utf.h"

namespace qm::analysis {

std::string DescribeFailure(const com_exception& failure, const std::string& path) {
  std::string text = text::ToUtf8(failure.description);
  // The system's texts end with a line break.
  text.erase(text.find_last_not_of(" \r\n") + 1);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  const std::string prefix = path + ": ";
  return text.compare(0, prefix.size(), prefix) == 0 ? text.substr(prefix.size()) : text;
}

}  // namespace qm::analysis
