#include "client/findings/BaselineFile.h"

#include <windows.h>

#include <stdexcept>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/TextFile.h"
#include "common/Path.h"

namespace mmcat {

std::vector<BaselineEntry> ReadBaseline(const std::string& file, IfMissing ifMissing) {
  if (file.empty()) {
    return {};
  }
  const qm::common::WideString path = ToSystemPath(file);
  const DWORD attributes =
      ::GetFileAttributesW(qm::common::ToExtendedPath(qm::common::ResolveFullPath(path)).c_str());
  const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
  if (isThere && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    throw std::runtime_error(file + ": this is a folder, not a baseline");
  }
  if (!isThere && ifMissing == IfMissing::Empty) {
    return {};
  }
  try {
    const std::string text = ReadTextFile(file);
    return text.empty() && ifMissing == IfMissing::Empty ? std::vector<BaselineEntry>()
                                                         : ParseBaseline(text);
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
