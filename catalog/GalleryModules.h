#pragma once

#include "catalog/CatalogModules.h"
#include "catalog/CatalogState.h"

namespace qm::catalog {

/// Adds the modules that are described in the gallery below `galleryRoot` and whose keys `modules`
/// does not have yet, in the order in which the file system lists the descriptions. Descriptions
/// without a module ID are left out. Adds nothing if the root is empty or the folder is missing.
/// Throws std::bad_alloc and raises failures of the sibling components.
void AddGalleryModules(CatalogState& state, const common::WideString& galleryRoot,
                       CatalogModules& modules);

}  // namespace qm::catalog
