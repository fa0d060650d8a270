#include "client/commands/Advice.h"

#include <algorithm>
#include <set>

#include "client/catalog/ModuleFile.h"
#include "client/catalog/ServerFailure.h"
#include "client/catalog/UserPath.h"
#include "client/catalog/Wildcards.h"
#include "client/terminal/FailureText.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Text.h"
#include "common/FolderFiles.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

bool HasExtension(const std::string& path, const wchar_t* extension) {
  return qm::common::HasExtension(qm::text::ToWide(path), extension);
}

/// Why a file that exists is not a module; empty if it is one.
std::string FindProblem(const std::string& path) {
  try {
    OpenModuleFile(path);
    return "";
  } catch (const ServerFailure& failure) {
    const std::string meaning = ExplainFailure(failure.HResult());
    return meaning.empty() ? failure.what() : meaning;
  }
}

}  // namespace

std::string AdviseOnFile(const std::string& word, const std::string& command) {
  if (IsFolder(word)) {
    return "this is a folder, not a module; mmcat " + command + " --folder " + QuoteArgument(word) +
           " looks in it";
  }
  const bool isDatabase = HasExtension(word, L".msm") || HasExtension(word, L".msi") ||
                          HasExtension(word, L".msp") || HasExtension(word, L".mst");
  if (isDatabase && !IsFile(word)) {
    return "the catalog has no such file, and it does not exist";
  }
  if (isDatabase) {
    const std::string problem = FindProblem(word);
    return problem.empty() ? "the catalog does not have this file; mmcat show " +
                                 QuoteArgument(word) + " reads it, --folder " +
                                 QuoteArgument(GetFolder(word)) + " makes it the catalog"
                           : problem;
  }
  for (const wchar_t* const extension :
       {L".dll", L".exe", L".ocx", L".tlb", L".sys", L".ttf", L".chm"}) {
    if (HasExtension(word, extension)) {
      const std::string name = GetFileName(word);
      return "this is a file, not a module; mmcat which " + QuoteArgument(name) +
             " lists what delivers it";
    }
  }
  return "";
}

std::string SuggestFiles(const ModuleSet& set, const std::string& word) {
  const auto findNames = [&set](const std::string& pattern) {
    std::set<std::string> names;
    for (const FileFacts& file : set.FindFiles(pattern)) {
      names.insert(file.name);
    }
    return std::vector<std::string>(names.begin(), names.end());
  };
  if (word.empty() || HasWildcard(word)) {
    return "";
  }
  const std::string pattern = '*' + word + '*';
  const std::vector<std::string> similar = findNames(pattern);
  if (similar.empty()) {
    return FormatSuggestion(FindNearestNames(word, findNames("")));
  }
  constexpr size_t kMost = 3;
  std::string text = "; \"" + pattern + "\" matches ";
  for (size_t i = 0; i < std::min(similar.size(), kMost); ++i) {
    text += (i == 0 ? "" : ", ") + similar[i];
  }
  return similar.size() > kMost ? text + " and " + std::to_string(similar.size() - kMost) + " more"
                                : text;
}

}  // namespace mmcat
