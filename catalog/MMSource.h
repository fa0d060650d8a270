#pragma once

#include "catalog/Source.h"
#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"

/// A search folder as clients see it: a snapshot of its description and records. Failures are
/// reported under MMCatalog.
class CMMSource : public IDispatchImpl<IMMSource>,
                  public CSupportErrorInfo<IMMSource>,
                  public CErrorHandler<&CLSID_MMCatalog>,
                  public CComObjectRoot {
 public:
  using InterfaceMap = CInterfaceMap<Via<IMMSource, IMMSource, IDispatch>,
                                     Via<ISupportErrorInfo, ISupportErrorInfo>>;

  virtual ~CMMSource() = default;

  void Init(const CSource& source);

  STDMETHOD(get_Entry)(BSTR* value) override;
  STDMETHOD(get_Folder)(BSTR* value) override;
  STDMETHOD(get_DisplayName)(BSTR* value) override;
  STDMETHOD(get_SecondPass)(VARIANT_BOOL* value) override;
  STDMETHOD(get_MergeModules)(IMergeModules** value) override;

 private:
  SearchFolder m_folder;
  std::shared_ptr<const RecordList> m_records;
};
