#pragma once

#include <windows.h>

#include "common/WideString.h"

namespace qm::traits {

class ProjectTraits;

// For code that writes project databases. The server calls none of these functions.

/// The HRESULT for a key that is not predefined and has no fallback.
constexpr HRESULT kUnknownPredefinedFolder = static_cast<HRESULT>(0x800403ED);

/// Returns the DefaultDir text for a new row of the Directory table: "short|long", or one name for
/// both. A key that is not predefined (case-sensitive) returns `fallback`. If that is empty, raises
/// kUnknownPredefinedFolder.
common::WideString GetDefaultDir(const common::WideString& key, const common::WideString& fallback);

/// Returns the reference to a predefined folder in a project of the kind of `traits`: the key
/// between delimiters. Empty for other keys, and for IISROOTFOLDER, to which projects do not refer.
common::WideString PredefinedFolderReference(const common::WideString& key,
                                             const ProjectTraits& traits);

}  // namespace qm::traits
