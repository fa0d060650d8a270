#include "gallery/SiblingObjects.h"

#include "com/error/Raise.h"
#include "com/loader/ComponentLoader.h"
#include "common/Bstr.h"

namespace qm::gallery {

common::ComPtr<IIniReader> CreateIniReader() {
  return com::ComponentLoader::Instance().Create<IIniReader>(L"Gleaner.dll", CLSID_IniReader);
}

common::ComPtr<IApplicationServices> CreateApplicationServices() {
  return com::ComponentLoader::Instance().Create<IApplicationServices>(L"QmAppServices.dll",
                                                                       CLSID_ApplicationServices);
}

common::WideString GetServiceText(
    IApplicationServices& services,
    HRESULT (STDMETHODCALLTYPE IApplicationServices::*operation)(BSTR*)) {
  common::UniqueBstr text;
  com::RaiseIfFailed((services.*operation)(text.Put()));
  return common::ViewOf(text.Get());
}

}  // namespace qm::gallery
