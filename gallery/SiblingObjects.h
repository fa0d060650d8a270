#pragma once

#include "common/ComPtr.h"
#include "common/WideString.h"
#include "idl/siblings.h"

// The sibling components that the gallery uses. Failures of loading are raised as
// CComponentLoader::Create raises them, failures of a component as the component reports them.

/// Creates an INI reader of Gleaner.dll.
CComPtr<IIniReader> CreateIniReader();

/// Creates an application-services object of QmAppServices.dll.
CComPtr<IApplicationServices> CreateApplicationServices();

/// Calls an operation of the application services and returns its text; see IApplicationServices.
CWideString AskServices(IApplicationServices& services,
                        HRESULT (STDMETHODCALLTYPE IApplicationServices::*operation)(BSTR*));
