#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"
#include "module/TableRows.h"

namespace qm::module {

/// A module that a module requires. Its language is a number, unlike that of an exclusion.
class CMMDependency : public ItemBase<IMMDependency> {
 public:
  void Init(const DependencyRow& dependency);
  const common::WideString& CollectionKey() const noexcept { return m_strKey; }

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Language)(long* value) override;

 private:
  common::WideString m_strKey;
  common::WideString m_strModuleID;
  common::WideString m_strVersion;
  long m_nLanguage = 0;
};

}  // namespace qm::module
