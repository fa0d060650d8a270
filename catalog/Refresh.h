#pragma once

#include <vector>

#include "catalog/CatalogState.h"
#include "catalog/ModuleList.h"

// The steps of a refresh, in their order. Each notes what it finds changed in the state, so that a
// failure in a later step loses nothing: the next refresh goes on from there. They throw
// std::bad_alloc, and raise what is said.

/// Has the sources of the process be those of `folders`: of a folder that is named twice the first
/// entry counts. Sources that stay as they are keep what they have read.
void UpdateSources(CCatalogState& state, const std::vector<SearchFolder>& folders);

/// Looks for changes in the folders of all sources, in the order of the sources.
void RecheckSources(CCatalogState& state);

/// Reads what changed, and lists all modules: those of first-pass sources, those of second-pass
/// sources, each by source and then by record, and those that only the gallery has.
CModuleList BuildModuleList(CCatalogState& state, const CWideString& galleryRoot);
