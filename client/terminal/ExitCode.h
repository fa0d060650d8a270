#pragma once

/// Exit codes of the client.
enum ExitCode {
  kSuccess = 0,
  kFindings = 1,  ///< something is as it should not be, and was shown
  kUsage = 2,
  kNothingMatched = 3,  ///< no module is what was asked for
  kSomeUnreadable = 4,  ///< some module could not be read; the others were shown
  kServerFailed = 5,    ///< the server itself could not be used
  kOutputFailed = 6,    ///< what was shown could not be written
};
