#include "client/terminal/NearestNames.h"

#include <algorithm>
#include <utility>

#include "text/Fold.h"

namespace mmcat {

namespace {

/// The number of letters to insert, delete or replace to turn one text into the other.
size_t MeasureEditDistance(const std::string& a, const std::string& b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) {
    row[j] = j;
  }
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = std::exchange(row[0], i);
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t exchanged = diagonal + (a[i - 1] != b[j - 1]);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, exchanged});
    }
  }
  return row[b.size()];
}

/// The part of a module key that people know: "CharmapCore" of "CharmapCore.3128F3C8_...:1033".
std::string ReadablePart(const std::string& name) {
  return name.substr(0, name.find_first_of(".:"));
}

/// How far a name is from what was wanted; 0 if it contains it.
size_t MeasureDistance(const std::string& wanted, const std::string& name) {
  if (name.find(wanted) != std::string::npos) {
    return 0;
  }
  return std::min(MeasureEditDistance(wanted, name),
                  MeasureEditDistance(ReadablePart(wanted), ReadablePart(name)));
}

}  // namespace

std::vector<std::string> FindNearestNames(const std::string& wanted,
                                          const std::vector<std::string>& names) {
  constexpr size_t kMost = 3;
  // The comparison takes time in proportion to the product of both lengths.
  constexpr size_t kLongest = 200;
  const std::string folded = qm::text::FoldCase(wanted);
  // Dashes alone are in every option.
  if (folded.find_first_not_of('-') == std::string::npos || folded.size() > kLongest) {
    return {};
  }
  const size_t farthest = 1 + ReadablePart(folded).size() / 4;
  std::vector<std::pair<size_t, std::string>> found;
  for (const std::string& name : names) {
    const size_t distance =
        name.size() > kLongest ? farthest + 1 : MeasureDistance(folded, qm::text::FoldCase(name));
    if (distance <= farthest) {
      found.emplace_back(distance, name);
    }
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  std::vector<std::string> nearest;
  for (size_t i = 0; i < std::min(found.size(), kMost); ++i) {
    nearest.push_back(found[i].second);
  }
  return nearest;
}

std::string FormatSuggestion(const std::vector<std::string>& nearestNames) {
  std::string text;
  for (const std::string& name : nearestNames) {
    text += (text.empty() ? "; did you mean " : " or ") + name;
  }
  return text;
}

std::string ExplainChoice(const std::string& word, const std::vector<std::string>& choices) {
  std::string text = word + ": not one of ";
  for (const std::string& choice : choices) {
    text += (&choice == &choices.front() ? "" : ", ") + choice;
  }
  const std::string folded = qm::text::FoldCase(word);
  const bool isChoice = std::find(choices.begin(), choices.end(), folded) != choices.end();
  return text + FormatSuggestion(isChoice ? std::vector<std::string>{folded}
                                          : FindNearestNames(word, choices));
}

}  // namespace mmcat
