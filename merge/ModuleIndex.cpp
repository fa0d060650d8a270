#include "merge/ModuleIndex.h"

#include <algorithm>

#include "merge/JoinTexts.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

/// The number of modules that satisfy a requirement, and how far each rule narrowed them down.
struct Field {
  size_t candidates = 0;
  size_t ofBestVersion = 0;
  size_t ofBestVersionAndLanguage = 0;  ///< exactly the wanted language, if a module has it
};

/// Returns the reason why a module was chosen from those that satisfy the requirement.
std::string ExplainChoice(const Requirement& requirement, const Field& field) {
  if (field.candidates == 1) {
    return "the only one";
  }
  std::vector<std::string> reasons;
  if (field.ofBestVersion < field.candidates) {
    reasons.push_back("the highest version of " + std::to_string(field.candidates));
  }
  if (field.ofBestVersionAndLanguage < field.ofBestVersion) {
    reasons.emplace_back(requirement.language == 0 ? "language-neutral"
                                                   : "of exactly this language");
  }
  if (field.ofBestVersionAndLanguage > 1) {
    reasons.push_back("the first of " + std::to_string(field.ofBestVersionAndLanguage));
  }
  if (!requirement.version.empty()) {
    reasons.push_back("at least " + requirement.version);
  }
  return JoinTexts(reasons, ", ");
}

}  // namespace

ModuleIndex::ModuleIndex(const std::vector<Module>& modules) : m_modules(modules) {
  for (size_t position = 0; position < modules.size(); ++position) {
    m_byId[text::FoldCase(modules[position].moduleId)].push_back(position);
  }
}

const std::vector<size_t>& ModuleIndex::FindById(const std::string& moduleId) const {
  static const std::vector<size_t> none;
  const auto found = m_byId.find(text::FoldCase(moduleId));
  return found == m_byId.end() ? none : found->second;
}

std::vector<size_t> ModuleIndex::FindByKey(const std::string& key) const {
  std::vector<size_t> positions;
  const size_t first = std::min(key.find(':'), key.size());
  AddByIdAndLanguage(key.substr(0, first), key.substr(std::min(first + 1, key.size())), positions);
  if (first < key.size()) {
    AddByIdAndLanguage(key, "", positions);
    const size_t last = key.rfind(':');
    if (last != first) {
      AddByIdAndLanguage(key.substr(0, last), key.substr(last + 1), positions);
    }
    std::sort(positions.begin(), positions.end());
  }
  return positions;
}

/// Adds the modules of an ID and a language, or of any language if that is empty.
void ModuleIndex::AddByIdAndLanguage(const std::string& moduleId, const std::string& language,
                                     std::vector<size_t>& positions) const {
  for (const size_t position : FindById(moduleId)) {
    if (language.empty() || language == std::to_string(m_modules[position].language)) {
      positions.push_back(position);
    }
  }
}

Choice ModuleIndex::Choose(const Requirement& requirement) const {
  if (requirement.moduleId.empty()) {
    return {std::nullopt, "it names no module"};
  }
  const std::vector<size_t>& sameId = FindById(requirement.moduleId);
  if (sameId.empty()) {
    return {std::nullopt, "no module has this ID"};
  }
  std::optional<size_t> best;
  Field field;
  bool anyLanguageFits = false;
  for (const size_t position : sameId) {
    const Module& module = m_modules[position];
    anyLanguageFits = anyLanguageFits || MatchesLanguage(requirement.language, module.language);
    if (!Satisfies(requirement, module.moduleId, module.language, module.version)) {
      continue;
    }
    ++field.candidates;
    const bool isExact = requirement.language == module.language;
    const bool isBestExact = best && requirement.language == m_modules[*best].language;
    const int order = best ? CompareVersionTexts(module.version, m_modules[*best].version) : 1;
    field.ofBestVersion = order > 0 ? 1 : field.ofBestVersion + (order == 0);
    if (order > 0 || (order == 0 && isExact && !isBestExact)) {
      best = position;
      field.ofBestVersionAndLanguage = 1;
    } else if (order == 0 && isExact == isBestExact) {
      ++field.ofBestVersionAndLanguage;
    }
  }
  if (!best && !anyLanguageFits) {
    return {best, "no module of this ID is for " + std::to_string(*requirement.language)};
  }
  if (!best) {
    const bool anyLanguage = requirement.language.value_or(0) == 0;
    return {best, "every version " +
                      (anyLanguage ? "" : "for " + std::to_string(*requirement.language) + ' ') +
                      "is lower than " + requirement.version};
  }
  return {best, ExplainChoice(requirement, field)};
}

}  // namespace qm::merge
