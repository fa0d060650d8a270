#include "client/commands/Advice.h"

#include <windows.h>

#include <algorithm>
#include <set>

#include "client/catalog/ModuleFile.h"
#include "client/catalog/ModuleNames.h"
#include "client/catalog/PathSpelling.h"
#include "client/catalog/ServerFailure.h"
#include "client/terminal/FailureText.h"
#include "client/terminal/NearestNames.h"
#include "common/FolderFiles.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

bool HasExtension(const std::string& path, const wchar_t* extension) {
  return qm::common::HasExtension(qm::text::ToWide(path), extension);
}

DWORD ReadAttributes(const std::string& path) {
  return ::GetFileAttributesW(ToSystemPath(path).c_str());
}

/// The folder of a path, as an argument for --folder.
std::string GetFolder(const std::string& path) {
  const size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? "." : slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
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

bool IsFile(const std::string& path) {
  const DWORD attributes = ReadAttributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = ReadAttributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

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

std::string QuoteArgument(const std::string& word) {
  const bool isPlain = !word.empty() && word.find_first_of(" \t*?&|<>()^;'$`") == std::string::npos;
  return isPlain ? word : '"' + word + '"';
}

}  // namespace mmcat
