#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// Up to three names the user may have meant by `wanted`, best match first: names that contain it
/// or differ from it in few letters, ignoring case. Module keys are also compared without their
/// GUID and language.
std::vector<std::string> FindNearestNames(const std::string& wanted,
                                          const std::vector<std::string>& names);

/// The end of a remark that suggests these names: "; did you mean A or B". Empty if there are none.
std::string FormatSuggestion(const std::vector<std::string>& nearestNames);

/// Says that a word is not one of these, and which one it may be: "CSV: not one of json, csv; did
/// you mean csv".
std::string ExplainChoice(const std::string& word, const std::vector<std::string>& choices);

}  // namespace mmcat
