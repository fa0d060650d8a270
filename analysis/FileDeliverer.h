#pragma once

#include "analysis/SetObject.h"
#include "merge/FileSearch.h"

namespace qm::analysis {

/// A module that delivers a file.
class FileDeliverer : public SetObject<IFileDeliverer> {
 public:
  void Init(SharedSet set, const merge::Deliverer& deliverer);

  STDMETHOD(get_FileName)(BSTR* value) override;
  STDMETHOD(get_ModuleKey)(BSTR* value) override;
  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Copies)(long* value) override;
  STDMETHOD(get_Files)(ISetFiles** value) override;
  STDMETHOD(get_IndexFile)(BSTR* value) override;
  STDMETHOD(get_Problem)(BSTR* value) override;

 private:
  SharedSet m_set;
  merge::Deliverer m_deliverer;
};

}  // namespace qm::analysis
