#pragma once

#include <vector>

#include "client/terminal/Report.h"
#include "merge/Findings.h"

/// The index of display names; the two others are of files.
inline constexpr char kModuleIndex[] = "modules.ini";

/// The entries of the three index files that name a module, in the order of the files; those of a
/// file that is missing are none. No interface of the catalog enumerates them, so this asks the
/// components that it asks itself. A file that cannot be read goes to the report. Throws
/// ServerFailure when a component cannot be used.
std::vector<IndexEntry> ReadIndexEntries(Report& report);
