#pragma once

#include <string>

namespace mmcat {

/// What a word is that was meant as a module of the catalog, and which command fits it better: a
/// folder, a module file that the catalog does not have, an installation package, a file that
/// modules deliver. Empty if it looks like a name.
std::string AdviseOnFile(const std::string& word);

/// Returns whether a file exists at a path of the user.
bool IsFile(const std::string& path);

/// Returns whether a folder exists at a path of the user.
bool IsFolder(const std::string& path);

}  // namespace mmcat
