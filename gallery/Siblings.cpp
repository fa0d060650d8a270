#include "gallery/Siblings.h"

#include "common/Bstr.h"
#include "server/error/Raise.h"
#include "server/loader/ComponentLoader.h"

CComPtr<IIniReader> CreateIniReader() {
  return CComponentLoader::Instance().Create<IIniReader>(L"Gleaner.dll", CLSID_IniReader);
}

CComPtr<IApplicationServices> CreateApplicationServices() {
  return CComponentLoader::Instance().Create<IApplicationServices>(L"QmAppServices.dll",
                                                                   CLSID_ApplicationServices);
}

CWideString AskServices(IApplicationServices& services,
                        HRESULT (STDMETHODCALLTYPE IApplicationServices::*operation)(BSTR*)) {
  CUniqueBstr text;
  ThrowIfFailed((services.*operation)(text.Put()));
  return ViewOf(text.Get());
}
