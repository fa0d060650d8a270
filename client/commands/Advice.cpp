#include "client/commands/Advice.h"

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
    return problem.empty()
               ? "the catalog does not have this file; mmcat " +
                     command.substr(0, command.find(' ')) + " --folder " +
                     QuoteArgument(GetFolder(word)) + ' ' + QuoteArgument(GetFileName(word)) +
                     " looks there, mmcat show " + QuoteArgument(word) + " reads it alone"
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

std::string FileSuggestions::Suggest(const std::string& word) {
  constexpr size_t kMostWords = 10;  // comparing with all names takes time, and nobody reads more
  if (word.empty() || HasWildcard(word) || ++m_words > kMostWords) {
    return "";
  }
  if (m_names.empty()) {
    ReadNames();
  }
  const std::string pattern = '*' + word + '*';
  std::vector<std::string> similar;
  std::vector<std::string> all;
  for (const auto& [name, shortName] : m_names) {
    const bool matches = MatchesPattern(pattern, name) || MatchesPattern(pattern, shortName);
    if (matches && (similar.empty() || similar.back() != name)) {
      similar.push_back(name);
    }
    all.push_back(name);
  }
  constexpr size_t kMost = 3;
  return similar.empty() ? FormatSuggestion(FindNearestNames(word, all))
                         : "; \"" + pattern + "\" matches " + JoinSome(similar, kMost);
}

void FileSuggestions::ReadNames() {
  for (const FileFacts& file : m_set.FindFiles("")) {
    m_names.emplace(file.name, file.shortName);
  }
}

}  // namespace mmcat
