#pragma once

#include <vector>

#include "catalog/CatalogModules.h"
#include "catalog/CatalogState.h"
#include "idl/openfiles.h"

namespace qm::catalog {

// The steps of a refresh, in order. The caller must own the ApartmentGate. Each step stores the
// changes that it finds in the state, so that the next refresh can continue if a later step fails.
// All throw std::bad_alloc.

/// Makes `folders` the sources of the process. If a folder occurs twice, its first entry is used.
/// Unchanged sources keep the records that they have read.
void UpdateSources(CatalogState& state, const std::vector<SearchFolder>& folders);

/// Looks for changes in the folders of all sources.
void RecheckSources(CatalogState& state);

/// Reads what has changed and lists all modules: first those of first-pass sources, then those of
/// second-pass sources, both by source and then by record, and last those that only the gallery
/// has. The files that are read are handed to `reader` too, unless it is null. Raises failures of
/// the sibling components and of `reader`.
CatalogModules BuildModuleList(CatalogState& state, const common::WideString& galleryRoot,
                               IOpenFileReader* reader);

}  // namespace qm::catalog
