#pragma once

#include <optional>
#include <vector>

#include "client/terminal/Report.h"
#include "common/WideString.h"

namespace mmcat {

// The folders below a module search folder, which the server itself does not look at. A folder that
// can be reached in several ways, through links, is looked at once, so circles end. Paths are full.

/// The folders of a tree that contain modules.
struct ModuleFolders {
  std::vector<qm::common::WideString> folders;  ///< each before those below it, else by name
  std::vector<FileFailure> failures;            ///< folders that could not be searched
};

/// Finds the folders with modules at and below `root`. A folder is a failure if it cannot be
/// listed, is more than 64 levels below `root`, or has a name that a search path cannot contain.
ModuleFolders FindModuleFolders(const qm::common::WideString& root);

/// Returns the path of a folder with modules below `root`; nothing if the first 200 folders have no
/// modules.
std::optional<qm::common::WideString> FindModulesBelow(const qm::common::WideString& root);

/// Returns whether an entry of a search path can be this folder.
bool FitsSearchPath(std::wstring_view folder) noexcept;

}  // namespace mmcat
