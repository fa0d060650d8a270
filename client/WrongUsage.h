#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace mmcat {

// Remarks on wrong command lines: what is wrong, and what to write instead. `app` is the parser of
// all commands. Arguments are UTF-8, as typed.

/// Returns what is wrong with arguments of which the first is not a command; an empty text if it is
/// a command or an option that needs none.
std::string ExplainFirstWord(const CLI::App& app, const std::vector<std::string>& arguments);

/// Returns which option of a command lacks its value: the next argument is an option too, or the
/// option is the last one; or which argument is an option with a slash for its dashes. The
/// arguments begin with the command. Empty if there is no such mistake.
std::string ExplainMissingValue(const CLI::App& app, const std::vector<std::string>& arguments);

/// The end of a remark if a path with a blank may have been typed without quotes; else empty.
std::string FormatQuotesHint(const std::vector<std::string>& arguments);

/// What is said about arguments that the parser of the first one, a command, did not expect.
std::vector<std::string> ExplainUnexpected(const CLI::App& app,
                                           const std::vector<std::string>& arguments,
                                           std::vector<std::string> unexpected);

/// The end of a remark on the arguments of a command.
std::string FormatHelpHint(const std::string& command);

/// A command line as a user could type it: arguments with blanks are in quotes.
std::string FormatCommandLine(const std::vector<std::string>& arguments);

}  // namespace mmcat
