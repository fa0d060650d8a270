#pragma once

#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/WideString.h"
#include "idl/qmmmupdater.h"

namespace qm::gallery {

/// A file that must be downloaded before a gallery module can be used. Its type information is in
/// the library of the classes; that of its collection is in the library of the interfaces.
class CMMGalleryDownloadFileCaskel
    : public com::DispatchImpl<IMMGalleryDownloadFileCaskel, IMMGalleryDownloadFileCaskel,
                               com::TypeLibrary::Classes>,
      public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<
      com::Via<IMMGalleryDownloadFileCaskel, IMMGalleryDownloadFileCaskel, IDispatch>>;

  /// Sets the fields; called once. A null text is treated as empty.
  void Init(const wchar_t* location, const wchar_t* mediaLocation, const wchar_t* internetLocation,
            long fileSize, const wchar_t* checkSum);

  STDMETHOD(get_Location)(BSTR* value) override;
  STDMETHOD(get_MediaLocation)(BSTR* value) override;
  STDMETHOD(get_InternetLocation)(BSTR* value) override;
  STDMETHOD(get_FileSize)(long* value) override;
  STDMETHOD(get_CheckSum)(BSTR* value) override;

 private:
  common::WideString m_strLocation;
  common::WideString m_strMediaLocation;
  common::WideString m_strInternetLocation;
  long m_lFileSize = 0;
  common::WideString m_strCheckSum;
};

}  // namespace qm::gallery
