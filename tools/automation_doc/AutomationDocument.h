#pragma once

#include <string>
#include <vector>

#include "tools/automation_doc/Examples.h"
#include "tools/automation_doc/TypeDescription.h"

/// The reference of the automation server in Markdown: `frame` with its places "@CONTENTS@",
/// "@CLASSES@", "@COLLECTIONS@" and "@INTERFACES@", each a line of its own, filled in.
///
/// Collections are described once, since they differ in their elements only. Throws
/// std::runtime_error when one differs in more, when a member has no example, when an example has
/// no member, when nothing tells the errors of a member, or when a place is missing.
std::string MakeAutomationDocument(const std::string& frame,
                                   const std::vector<ClassDescription>& classes,
                                   const std::vector<InterfaceDescription>& interfaces,
                                   CExamples examples);
