#pragma once

#include <string>

#include "client/terminal/Report.h"

namespace mmcat {

/// Explains the code of a failure to read a module or another file, as a sentence for the user.
/// Empty if the failure's own description says more.
std::string ExplainFailure(HRESULT result);

/// A failure as a remark: what it means first, the code last.
std::string FormatFailure(const FileFailure& failure);

}  // namespace mmcat
