#pragma once

#include "catalog/Source.h"
#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"

namespace qm::catalog {

/// A search folder as clients see it: a snapshot of its description and records. Failures are
/// reported under MMCatalog.
class CMMSource : public com::DispatchImpl<IMMSource>,
                  public com::SupportErrorInfo<IMMSource>,
                  public com::CErrorHandler<&CLSID_MMCatalog>,
                  public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<IMMSource, IMMSource, IDispatch>,
                                         com::Via<ISupportErrorInfo, ISupportErrorInfo>>;

  virtual ~CMMSource() = default;

  void Init(const Source& source);

  STDMETHOD(get_Entry)(BSTR* value) override;
  STDMETHOD(get_Folder)(BSTR* value) override;
  STDMETHOD(get_DisplayName)(BSTR* value) override;
  STDMETHOD(get_SecondPass)(VARIANT_BOOL* value) override;
  STDMETHOD(get_MergeModules)(IMergeModules** value) override;

 private:
  SearchFolder m_folder;
  std::shared_ptr<const RecordList> m_records;
};

}  // namespace qm::catalog
