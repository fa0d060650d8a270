#pragma once

namespace mmcat {

/// Exit codes of the client.
enum ExitCode {
  kSuccess = 0,
  kFindings = 1,  ///< problems were found, and printed
  kUsage = 2,
  kNothingMatched = 3,  ///< no module or file matches what was asked for, or there are no modules
  kSomeUnreadable = 4,  ///< some modules or folders could not be read; the others were printed
  kServerFailed = 5,    ///< the server or a sibling component failed, or memory ran out
  kOutputFailed = 6,    ///< the output could not be written
};

}  // namespace mmcat
