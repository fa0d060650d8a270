#pragma once

#include "com/component/ComponentObject.h"
#include "idl/siblings.h"

namespace qm::siblings {

/// The folders and search paths of the authoring environment (coclass ApplicationServices).
///
/// Each value comes from its environment variable, otherwise from its key in section [Services] of
/// QmAppServices.ini beside the DLL, otherwise it is a default. An empty value is used as it is.
/// Values are read at every call, so that changes take effect at once. It is a failure if the INI
/// file exists and cannot be read. Environment variables ("%NAME%") are expanded in folders but not
/// in search paths.
class CApplicationServices
    : public com::ComponentObject<IApplicationServices, &CLSID_ApplicationServices> {
 public:
  STDMETHOD(get_GalleryRoot)(BSTR* folder) override;
  STDMETHOD(Reserved2)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved3)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved4)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved5)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved6)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved7)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved8)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved9)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved10)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved11)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(Reserved12)(BSTR* value) override { return AnswerNotImplemented(value); }
  STDMETHOD(get_FileIndexFolder)(BSTR* folder) override;
  STDMETHOD(get_ModuleIndexFolder)(BSTR* folder) override;
  STDMETHOD(get_ModuleSearchPath)(BSTR* path) override;
  STDMETHOD(get_DataFolder)(BSTR* folder) override;
  STDMETHOD(get_UserModuleSearchPath)(BSTR* path) override;

 private:
  static HRESULT AnswerNotImplemented(BSTR* out) noexcept;
};

}  // namespace qm::siblings
