#pragma once

#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/WideString.h"
#include "idl/qmmmupdater.h"

/// One file that has to be fetched before a gallery module can be used. It is described by the
/// library of the classes, unlike its collection.
class CMMGalleryDownloadFileCaskel
    : public IDispatchImpl<IMMGalleryDownloadFileCaskel, IMMGalleryDownloadFileCaskel,
                           TypeLibrary::Classes>,
      public CComObjectRoot {
 public:
  using InterfaceMap =
      CInterfaceMap<Via<IMMGalleryDownloadFileCaskel, IMMGalleryDownloadFileCaskel, IDispatch>>;

  /// Sets the fields, once; a null text counts as empty.
  void Init(const wchar_t* location, const wchar_t* mediaLocation, const wchar_t* internetLocation,
            long fileSize, const wchar_t* checkSum);

  STDMETHOD(get_Location)(BSTR* value) override;
  STDMETHOD(get_MediaLocation)(BSTR* value) override;
  STDMETHOD(get_InternetLocation)(BSTR* value) override;
  STDMETHOD(get_FileSize)(long* value) override;
  STDMETHOD(get_CheckSum)(BSTR* value) override;

 private:
  CWideString m_strLocation;
  CWideString m_strMediaLocation;
  CWideString m_strInternetLocation;
  long m_lFileSize = 0;
  CWideString m_strCheckSum;
};
