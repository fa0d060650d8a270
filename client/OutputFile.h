#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "client/terminal/ExitCode.h"
#include "client/terminal/OutputFormat.h"

namespace mmcat {

/// The format that the extension of a file stands for; no value if it stands for none.
std::optional<OutputFormat> FormatOfFile(const std::string& file);

/// Returns whether the extension of a file says that it is neither text nor a format of mmcat, such
/// as ".xlsx".
bool HasForeignExtension(const std::string& file);

/// Returns why a run must not print to a file, as a text for the user: the run reads the file, or
/// the catalog would. Empty if it may. `filesInUse` are the files that the run reads; they need not
/// exist.
std::string ExplainOutputFile(const std::string& file, const std::vector<std::string>& filesInUse);

/// Runs a command whose output in `format` is for a file, which the user named (UTF-8). The file is
/// written only once there is a result, so a failure leaves an existing one as it is. "-" is
/// stdout. Returns the command's exit code, or kOutputFailed after a remark if the file cannot be
/// written.
ExitCode PrintToFile(const std::string& file, OutputFormat format,
                     const std::function<ExitCode()>& command);

}  // namespace mmcat
