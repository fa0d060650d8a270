#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"
#include "module/TableRows.h"

namespace qm::module {

/// A module that a module excludes. Its language is a text, unlike that of a dependency.
class CMMExclusion : public ItemBase<IMMExclusion> {
 public:
  void Init(const ExclusionRow& exclusion);
  const common::WideString& CollectionKey() const noexcept { return m_strKey; }

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_MinVersion)(BSTR* value) override;
  STDMETHOD(get_MaxVersion)(BSTR* value) override;
  STDMETHOD(get_Language)(BSTR* value) override;

 private:
  common::WideString m_strKey;
  common::WideString m_strModuleID;
  common::WideString m_strMinVersion;
  common::WideString m_strMaxVersion;
  common::WideString m_strLanguage;
  common::WideString m_strRecordKey;  ///< the key of the row's record; not used by any property
};

}  // namespace qm::module
