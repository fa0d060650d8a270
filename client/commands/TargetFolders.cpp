#include "client/commands/TargetFolders.h"

#include <set>

#include "client/terminal/Page.h"
#include "client/terminal/Text.h"

namespace mmcat {

std::string FormatTargetFolders(const std::vector<const FileFacts*>& copies) {
  constexpr size_t kMost = 10;
  std::vector<std::string> folders;
  std::set<std::string> seen;
  for (const FileFacts* const copy : copies) {
    if (!copy->targetPath.empty() && seen.insert(copy->targetPath).second) {
      folders.push_back(copy->targetPath);
    }
  }
  if (folders.size() < 2 || !CurrentPage().width) {
    return JoinSome(folders, kMost);
  }
  NoteShortened({});
  return std::to_string(folders.size()) + " folders";
}

}  // namespace mmcat
