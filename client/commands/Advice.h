#pragma once

#include <string>

#include "client/catalog/ModuleSet.h"

namespace mmcat {

/// What a word is that was meant as a module of the catalog, and which command fits it better: a
/// folder, a module file that the catalog does not have, another file, a file that modules deliver.
/// `command` is the command with what else it takes, such as "deps KEY". Empty if the word looks
/// like a name.
std::string AdviseOnFile(const std::string& word, const std::string& command);

/// The end of a remark on a word that is no name of a file in modules: the files with this in their
/// names, or else those with the nearest names.
std::string SuggestFiles(const ModuleSet& set, const std::string& word);

}  // namespace mmcat
