#pragma once

#include <windows.h>

#include "common/WideString.h"

class ProjectTraits;

// For what writes project databases: no caller in the server.

/// HRESULT of a predefined folder that has no default directory.
constexpr HRESULT kUnknownPredefinedFolder = static_cast<HRESULT>(0x800403ED);

/// The DefaultDir text that a predefined folder gets when its row of the Directory table has to be
/// made: "short|long", or one name for both. A key that is not predefined (the comparison is exact)
/// gets `fallback`; without a fallback kUnknownPredefinedFolder is raised.
CWideString DefaultDirOf(const CWideString& key, const CWideString& fallback);

/// The reference to a predefined folder in a project of the kind of `traits`: the key between its
/// delimiters. Empty for other keys, and for IISROOTFOLDER, to which projects do not refer.
CWideString PredefinedFolderReference(const CWideString& key, const ProjectTraits& traits);
