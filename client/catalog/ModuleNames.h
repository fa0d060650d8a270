#pragma once

#include <string>
#include <vector>

namespace mmcat {

// Modules as people name them. The catalog and the set know only keys and IDs (FindModule). Any
// other word may be the beginning of an ID, a module's file, or a display name. Texts are UTF-8;
// case is ignored.

/// What a module can be named by.
struct NamedModule {
  std::string key;
  std::string moduleId;
  std::string path;  ///< as the user spells it; empty if the module is not on this machine
  std::string displayName = {};
};

struct NameMatch {
  std::vector<size_t> modules;          ///< positions, in ascending order; empty if ambiguous
  std::vector<std::string> candidates;  ///< keys or paths to choose from if ambiguous
};

/// Finds the modules that a word names:
/// - the beginning of an ID, "TinyZip" or "TinyZip.DC6C", with ":LANGUAGE" for one language, unless
///   modules with several IDs begin like this; an ID with exactly this name takes precedence;
/// - or the name of a file with or without ".msm" and some of its folders, or its path from the
///   current folder;
/// - or else a display name.
NameMatch MatchName(const std::vector<NamedModule>& modules, const std::string& word);

/// Returns whether the key, ID, or file name of a module matches a pattern.
bool MatchesPattern(const std::string& pattern, const NamedModule& module);

/// The positions of the modules that match a pattern.
std::vector<size_t> FindMatching(const std::vector<NamedModule>& modules,
                                 const std::string& pattern);

/// The positions of the modules that a word means: those that match it if it is a pattern, else
/// those that it names (MatchName). A file that cannot be read is a module like any other.
std::vector<size_t> FindNamed(const std::vector<NamedModule>& modules, const std::string& word);

}  // namespace mmcat
