#pragma once

#include <functional>
#include <optional>
#include <string>

#include "client/terminal/ExitCode.h"
#include "client/terminal/OutputFormat.h"

namespace mmcat {

/// The format that the extension of a file stands for; no value if it stands for none.
std::optional<OutputFormat> FormatOfFile(const std::string& file);

/// Runs a command whose output in `format` is for a file, which the user named (UTF-8). The file is
/// written only once there is a result, so a failure leaves an existing one as it is. "-" is
/// stdout. Returns the command's exit code, or kOutputFailed after a remark if the file cannot be
/// written.
ExitCode PrintToFile(const std::string& file, OutputFormat format,
                     const std::function<ExitCode()>& command);

}  // namespace mmcat
