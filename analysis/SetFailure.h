#pragma once

#include "analysis/SetObject.h"

namespace qm::analysis {

/// A file that could not be read.
class SetFailure : public SetObject<ISetFailure> {
 public:
  void Init(SharedSet set, const LoadFailure& failure) noexcept;

  STDMETHOD(get_Path)(BSTR* value) override;
  STDMETHOD(get_Text)(BSTR* value) override;
  STDMETHOD(get_Code)(long* value) override;
  STDMETHOD(get_Module)(ISetModule** value) override;

 private:
  SharedSet m_set;
  const LoadFailure* m_failure = nullptr;
};

}  // namespace qm::analysis
