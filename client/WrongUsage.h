#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace mmcat {

// Remarks on wrong command lines: what is wrong, and what to write instead. `app` is the parser of
// all commands. Arguments are UTF-8, as typed.

/// Returns what is wrong if the first argument is neither a command nor an option of the program
/// itself; otherwise an empty text.
std::string ExplainFirstWord(const CLI::App& app, const std::vector<std::string>& arguments);

/// Returns which option of a command lacks its value: the next argument is an option too, or the
/// option is the last one; or which argument has a slash instead of the dashes of an option. The
/// arguments begin with the command. Empty if there is no such mistake.
std::string ExplainMissingValue(const CLI::App& app, const std::vector<std::string>& arguments);

/// The end of a remark if a path with a blank may have been typed without quotes; else empty.
std::string FormatQuotesHint(const std::vector<std::string>& arguments);

/// Returns a remark on each argument that the command, which is the first argument, did not expect.
std::vector<std::string> ExplainUnexpected(const CLI::App& app,
                                           const std::vector<std::string>& arguments,
                                           std::vector<std::string> unexpected);

/// The end of a remark on the arguments of a command.
std::string FormatHelpHint(const std::string& command);

/// A command line as a user could type it: arguments with blanks are in quotes.
std::string FormatCommandLine(const std::vector<std::string>& arguments);

}  // namespace mmcat
