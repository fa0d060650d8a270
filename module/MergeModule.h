#pragma once

#include <memory>

#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "module/CacheMSM.h"

/// One merge module (coclass MergeModule2). Every answer comes from a module record, which the
/// object shares with whoever made it; Open replaces the record of this object alone.
class CMergeModule : public CSupportErrorInfo<IMergeModule, IMergeModule2, IMergeModuleTavik>,
                     public IDispatchImpl<IMergeModuleTavik>,
                     public CErrorHandler<&CLSID_MergeModule2>,
                     public CComObjectRoot {
 public:
  using InterfaceMap = CInterfaceMap<
      Via<ISupportErrorInfo, ISupportErrorInfo>,
      Via<IMergeModuleTavik, IMergeModuleTavik, IMergeModule2, IMergeModule, IDispatch>>;

  virtual ~CMergeModule() = default;

  /// Has the object answer from `record`, which it shares with the caller.
  void Attach(std::shared_ptr<CCacheMSM> record) noexcept { m_pCache = std::move(record); }

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
  /// The record in use, kept alive for the caller's work. Raises E_UNEXPECTED when there is none.
  std::shared_ptr<CCacheMSM> RequireRecord() const;

  /// A text of the record.
  template <class Text>
  HRESULT GetText(Text (CCacheMSM::*text)() const noexcept, BSTR* value) const noexcept;

  /// A new Collection with one new Item per entry of the record's `list`, in its order.
  template <class Item, class Collection, class List, class Interface>
  HRESULT GetCollection(List (CCacheMSM::*list)(), Interface** value) const noexcept;

  /// A record of the catalog, or the one that Open made: shared ownership makes no difference
  /// between them.
  std::shared_ptr<CCacheMSM> m_pCache;
};
