#pragma once

#include <string>
#include <vector>

/// Exit codes of the client.
enum ExitCode {
  kSuccess = 0,
  kUsage = 2,
  kOutputFailed = 3,    ///< what was shown could not be written
  kSomeUnreadable = 4,  ///< some file could not be read; the others were shown
  kServerFailed = 5,    ///< the server itself could not be used
};

/// `mmcat show`: prints each module file of `files` (UTF-8 paths) to stdout and each failure to
/// stderr, with file, HRESULT and description. Throws ServerFailure when the server cannot be used.
ExitCode Show(const std::vector<std::string>& files, bool json);
