#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/SetData.h"

namespace qm::analysis {

/// Reads the description files of the object gallery, sorted by name. Returns an empty list if no
/// gallery is configured. For a file that cannot be read, the description has the failure. Raises
/// failures of the application services. Throws std::bad_alloc.
std::vector<GalleryDescription> ReadGalleryDescriptions();

/// Fills a module that is not on this machine from its description: summary, requirements,
/// exclusions and files. Adds to `texts` the texts that its files refer to, which must live as long
/// as the module. If the description cannot be read, sets Module::failure and returns its code;
/// otherwise returns S_OK. Throws std::bad_alloc.
HRESULT ReadDescription(merge::Module& module,
                        std::vector<std::unique_ptr<const std::string>>& texts);

}  // namespace qm::analysis
