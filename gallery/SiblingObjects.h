#pragma once

#include "common/ComPtr.h"
#include "common/WideString.h"
#include "idl/siblings.h"

namespace qm::gallery {

// The sibling components that the gallery uses. Failures of loading are raised as
// ComponentLoader::Create raises them, failures of a component as the component reports them.

/// Creates an INI reader of Gleaner.dll.
common::ComPtr<IIniReader> CreateIniReader();

/// Creates an application-services object of QmAppServices.dll.
common::ComPtr<IApplicationServices> CreateApplicationServices();

/// Calls an operation of the application services and returns its text; see IApplicationServices.
common::WideString GetServiceText(
    IApplicationServices& services,
    HRESULT (STDMETHODCALLTYPE IApplicationServices::*operation)(BSTR*));

}  // namespace qm::gallery
