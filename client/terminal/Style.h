#pragma once

#include <string>

namespace mmcat {

// Marks in text for terminals that show colours. Report removes them for all other output. Text
// from modules cannot contain marks, because MakePrintable removes its control characters.

/// Text marked as a heading.
std::string MarkHeading(const std::string& text);

/// Text marked as the code of a finding.
std::string MarkHighlight(const std::string& text);

/// Text with all marks removed.
std::string RemoveMarks(const std::string& text);

}  // namespace mmcat
