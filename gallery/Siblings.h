#pragma once

#include "common/ComPtr.h"
#include "common/WideString.h"
#include "idl/siblings.h"

// The sibling components that the gallery asks. Failures are raised as CComponentLoader::Create
// raises them, or as the component itself tells them.

/// A new INI reader of Gleaner.dll.
CComPtr<IIniReader> CreateIniReader();

/// A new application-services object of QmAppServices.dll.
CComPtr<IApplicationServices> CreateApplicationServices();

/// The text that an operation of the application services gives; see IApplicationServices.
CWideString AskServices(IApplicationServices& services,
                        HRESULT (STDMETHODCALLTYPE IApplicationServices::*operation)(BSTR*));
