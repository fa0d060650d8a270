#pragma once

#include <string>

// Text for people may be marked for a terminal that shows colours; Report takes the marks out for
// everything else. Texts from outside have no marks, since Printable leaves them no control
// characters.

/// A heading.
std::string Heading(const std::string& text);

/// The code of a finding.
std::string Highlighted(const std::string& text);

std::string WithoutMarks(const std::string& text);
