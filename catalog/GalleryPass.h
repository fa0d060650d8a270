#pragma once

#include "catalog/CatalogState.h"
#include "catalog/ModuleList.h"

/// Adds the modules that the gallery below `galleryRoot` describes and that `modules` does not have
/// yet, in the order in which the file system lists their descriptions. A description without a
/// module ID is left out; an empty root, or a folder that is missing, has none. Throws
/// std::bad_alloc and raises failures of the sibling components.
void AddModulesOfGallery(CCatalogState& state, const CWideString& galleryRoot,
                         CModuleList& modules);
