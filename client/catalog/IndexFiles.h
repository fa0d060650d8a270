#pragma once

#include <vector>

#include "client/terminal/Report.h"
#include "merge/Findings.h"

namespace mmcat {

/// The index of display names. The other two are indexes of files.
inline constexpr char kDisplayNameIndex[] = "modules.ini";

/// Reads the entries of the three index files that name a module, in file order. A missing file has
/// no entries; one that cannot be read is added to the report. No interface of the catalog
/// enumerates the entries, so this calls the sibling components that the catalog reads them with.
/// Throws ServerFailure if the application services fail.
std::vector<qm::merge::IndexEntry> ReadIndexEntries(Report& report);

}  // namespace mmcat
