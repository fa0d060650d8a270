#pragma once

#include <string>

namespace mmcat {

// Where a build server shows a finding. Paths are UTF-8, in the spelling of Windows or in that of
// the host system.

/// A path from the folder `base`, with slashes, such as "modules/A.msm" or "../A.msm". A path on
/// another drive is returned in full, also with slashes. In a path that is not full, only the
/// backslashes are replaced.
std::string MakeRelativePath(const std::string& path, const std::string& base);

/// A path with slashes as a URI reference: relative, or "file:///C:/..." for a full path.
std::string MakeUri(const std::string& path);

}  // namespace mmcat
