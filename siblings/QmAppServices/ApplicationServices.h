#pragma once

#include "siblings/Component/ComponentObject.h"

/// Where the authoring environment keeps things (coclass ApplicationServices).
///
/// Each value is that of its environment variable, else that of its key in section [Services] of
/// QmAppServices.ini beside the DLL, else a default. What is set to nothing is set. Read anew at
/// every call, so that a change counts at once; an INI file that is there and cannot be read is a
/// failure. Environment variables ("%NAME%") are expanded in folders; search paths keep them.
class CApplicationServices
    : public CComponentObject<IApplicationServices, &CLSID_ApplicationServices> {
 public:
  STDMETHOD(get_GalleryRoot)(BSTR* folder) override;
  STDMETHOD(Reserved2)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved3)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved4)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved5)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved6)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved7)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved8)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved9)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved10)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved11)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(Reserved12)(BSTR* value) override { return NotImplemented(value); }
  STDMETHOD(get_FileIndexFolder)(BSTR* folder) override;
  STDMETHOD(get_ModuleIndexFolder)(BSTR* folder) override;
  STDMETHOD(get_ModuleSearchPath)(BSTR* path) override;
  STDMETHOD(get_DataFolder)(BSTR* folder) override;
  STDMETHOD(get_UserModuleSearchPath)(BSTR* path) override;

 private:
  static HRESULT NotImplemented(BSTR* out) noexcept;
};
