#pragma once

#include <string>

#include "client/terminal/Report.h"

namespace mmcat {

/// What the code of a failure to read a module or another file means to whoever made the file, as a
/// sentence; an empty text if the description says more.
std::string ExplainFailure(HRESULT result);

/// A failure as a remark: what it means first, the code last.
std::string FormatFailure(const FileFailure& failure);

}  // namespace mmcat
