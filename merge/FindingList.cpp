#include "merge/FindingList.h"

#include <algorithm>
#include <utility>

#include "merge/JoinTexts.h"

namespace qm::merge {

bool FindingList::Admit(const char* code) {
  Count& count = m_counts[code];
  if (count.listed == kMaxFindings) {
    ++count.unlisted;
    return false;
  }
  ++count.listed;
  return true;
}

bool FindingList::IsFull(const char* code) const {
  const auto count = m_counts.find(code);
  return count != m_counts.end() && count->second.listed == kMaxFindings;
}

Finding& FindingList::Add(const char* code, const std::vector<std::size_t>& modules,
                          std::string text) {
  Finding& finding = m_findings.emplace_back(MakeFinding(code, std::move(text)));
  const std::size_t count = std::min(modules.size(), kMaxModules);
  finding.positions.assign(modules.begin(), modules.begin() + static_cast<std::ptrdiff_t>(count));
  for (const std::size_t position : finding.positions) {
    finding.modules.push_back(NameOf(position));
  }
  return finding;
}

Finding& FindingList::AddForCell(const char* code, const CellInRow& cell, std::string text) {
  Finding& finding = Add(code, {cell.module}, std::move(text));
  finding.table = cell.table;
  finding.key = Shorten(cell.key);
  finding.values = {{cell.module, cell.column, Shorten(cell.value)}};
  return finding;
}

Finding& FindingList::AddForFile(const char* code, std::size_t module, const DeliveredFile& file,
                                 const char* column, std::string_view value,
                                 const std::string& problem) {
  Finding& finding =
      AddForCell(code, {module, "File", file.key, column, value},
                 NameOf(module) + " delivers " + Shorten(file.name) + " with " + problem);
  finding.file = Shorten(file.name);
  return finding;
}

std::vector<Finding> FindingList::Take() {
  for (const auto& [code, count] : m_counts) {
    if (count.unlisted > 0 || !count.isComplete) {
      const std::string number = std::to_string(count.unlisted) + " more";
      Finding& rest = m_findings.emplace_back(
          MakeFinding(std::string(code).c_str(), (count.isComplete     ? number
                                                  : count.unlisted > 0 ? "at least " + number
                                                                       : "more") +
                                                     " findings of this kind are not listed"));
      rest.isRest = true;
    }
  }
  SortFindings(m_findings);
  return std::move(m_findings);
}

std::string FindingList::JoinNames(const std::vector<std::size_t>& modules,
                                   const char* between) const {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < std::min(modules.size(), kMaxModules); ++i) {
    names.push_back(NameOf(modules[i]));
  }
  const std::size_t more = modules.size() - names.size();
  return JoinTexts(names, between) + (more > 0 ? " and " + std::to_string(more) + " more" : "");
}

std::string JoinSome(const std::vector<std::string>& texts, const char* between) {
  const std::size_t count = std::min(texts.size(), FindingList::kMaxModules);
  const std::vector<std::string> shown(texts.begin(),
                                       texts.begin() + static_cast<std::ptrdiff_t>(count));
  const std::size_t more = texts.size() - count;
  return JoinTexts(shown, between) + (more > 0 ? " and " + std::to_string(more) + " more" : "");
}

std::string Shorten(std::string_view text) {
  constexpr std::size_t kMaxSize = 200;
  if (text.size() <= kMaxSize) {
    return std::string(text);
  }
  std::size_t end = kMaxSize;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) {
    --end;
  }
  return std::string(text.substr(0, end)) + "...";
}

std::string QuoteShort(std::string_view text) { return '"' + Shorten(text) + '"'; }

}  // namespace qm::merge
