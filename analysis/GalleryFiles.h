#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/SetData.h"

namespace qm::analysis {

/// Reads the description files of the object gallery, sorted by name. Returns nothing if there is
/// no gallery. A file that cannot be read has its failure. Raises failures of the application
/// services. Throws std::bad_alloc.
std::vector<GalleryDescription> ReadGalleryDescriptions();

/// Fills a module that is not on this machine from its description: summary, requirements,
/// exclusions and files. The texts that its files refer to are added to `texts`. What cannot be
/// read becomes its failure, whose code is returned, else S_OK. Throws std::bad_alloc.
HRESULT ReadDescription(merge::Module& module,
                        std::vector<std::unique_ptr<const std::string>>& texts);

}  // namespace qm::analysis
