#pragma once

#include <string>
#include <vector>

#include "tools/automation_doc/Examples.h"
#include "tools/automation_doc/TypeDescription.h"

namespace qm::docs {

/// Returns the reference of automation objects in Markdown: `frame`, with its lines
/// "@CONTENTS@", "@CLASSES@", "@COLLECTIONS@" and "@INTERFACES@" filled in.
///
/// Collections are described once, because they differ only in their elements. Throws
/// std::runtime_error if one differs in more, if a member has no example or no documented errors,
/// if an example has no member, or if a line is missing.
std::string MakeAutomationDocument(const std::string& frame,
                                   const std::vector<ClassDescription>& classes,
                                   const std::vector<InterfaceDescription>& interfaces,
                                   Examples examples);

}  // namespace qm::docs
