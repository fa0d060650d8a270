#pragma once

#include <memory>

#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "module/CacheMSM.h"

namespace qm::module {

/// One merge module (coclass MergeModule2). Its properties come from a module record, which it
/// shares with the catalog that read it. Open replaces the record of this object only.
class CMergeModule : public com::SupportErrorInfo<IMergeModule, IMergeModule2, IMergeModuleTavik>,
                     public com::DispatchImpl<IMergeModuleTavik>,
                     public com::CErrorHandler<&CLSID_MergeModule2>,
                     public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<
      com::Via<ISupportErrorInfo, ISupportErrorInfo>,
      com::Via<IMergeModuleTavik, IMergeModuleTavik, IMergeModule2, IMergeModule, IDispatch>>;

  virtual ~CMergeModule() = default;

  /// Sets the record, which the object then shares with the caller.
  void SetRecord(std::shared_ptr<CCacheMSM> record) noexcept { m_pCache = std::move(record); }

  // IMergeModule
  STDMETHOD(get_Dialogs)(IMMDialogs** value) override;
  STDMETHOD(get_CustomActions)(IMMCustomActions** value) override;
  STDMETHOD(get_PackageCode)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_Path)(BSTR* value) override;
  STDMETHOD(get_Comments)(BSTR* value) override;
  STDMETHOD(get_Subject)(BSTR* value) override;
  STDMETHOD(get_Author)(BSTR* value) override;
  STDMETHOD(get_Language)(long* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Dependencies)(IMMDependencies** value) override;
  STDMETHOD(get_Exclusions)(IMMExclusions** value) override;
  STDMETHOD(get_Files)(IMMFiles** value) override;
  STDMETHOD(get_DisplayName)(BSTR* value) override;
  STDMETHOD(Open)(BSTR path) override;

  // IMergeModule2
  STDMETHOD(get_Present)(VARIANT_BOOL* value) override;
  STDMETHOD(get_NeedsDownload)(VARIANT_BOOL* value) override;
  STDMETHOD(get_DownloadFiles)(IMMGalleryDownloadFilesCaskel** value) override;
  STDMETHOD(get_LocalPath)(BSTR* value) override;

  // IMergeModuleTavik
  STDMETHOD(get_HasOrigin)(VARIANT_BOOL* value) override;
  STDMETHOD(get_Origin)(BSTR* value) override;

 private:
  /// Returns the current record; the caller's reference keeps it alive if Open replaces it
  /// meanwhile. Raises E_UNEXPECTED if there is no record.
  std::shared_ptr<CCacheMSM> RequireRecord() const;

  /// Implements a text property.
  template <class Text>
  HRESULT GetText(Text (CCacheMSM::*text)() const noexcept, BSTR* value) const noexcept;

  /// Creates a Collection with one new Item for each entry of the record's `list`, in order.
  template <class Item, class Collection, class List, class Interface>
  HRESULT GetCollection(List (CCacheMSM::*list)(), Interface** value) const noexcept;

  /// The catalog's record, or the one that Open made; null before either.
  std::shared_ptr<CCacheMSM> m_pCache;
};

}  // namespace qm::module
