#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// One line of a section, name=value, in UTF-8.
struct IniLine {
  std::string name;
  std::string value;
};

/// Reads the lines of a section of an INI file with the INI reader component. Returns nothing if
/// there is no such section. Throws ServerFailure if the component or the file cannot be read.
std::vector<IniLine> ReadIniSection(const std::string& path, const wchar_t* section);

}  // namespace mmcat
