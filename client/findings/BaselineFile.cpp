#include "client/findings/BaselineFile.h"

#include <stdexcept>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/TextFile.h"
#include "common/Path.h"

namespace mmcat {

std::vector<BaselineEntry> ReadBaseline(const std::string& file, IfMissing ifMissing) {
  if (file.empty()) {
    return {};
  }
  const bool isThere = qm::common::PathExists(ToSystemPath(file));
  if (!isThere && ifMissing == IfMissing::Empty) {
    return {};
  }
  try {
    return ParseBaseline(ReadTextFile(file));
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error(file + ": " + failure.what() +
                             (isThere ? "" : "; --write-baseline makes a baseline"));
  }
}

void WriteBaseline(const std::string& file, std::vector<BaselineEntry> entries) {
  try {
    WriteTextFile(file, FormatBaseline(std::move(entries)));
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error(file + ": cannot write the baseline: " + failure.what());
  }
}

}  // namespace mmcat
