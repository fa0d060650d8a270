#include "gallery/SiblingObjects.h"

#include "com/error/Raise.h"
#include "com/loader/ComponentLoader.h"
#include "common/Bstr.h"

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
  RaiseIfFailed((services.*operation)(text.Put()));
  return ViewOf(text.Get());
}
