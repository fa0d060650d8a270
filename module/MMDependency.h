#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"
#include "module/TableRows.h"

/// A module that a module requires. Its language is a number, unlike that of an exclusion.
class CMMDependency : public CMMItem<IMMDependency> {
 public:
  void Init(const DependencyRecord& dependency);
  const CWideString& CollectionKey() const noexcept { return m_strKey; }

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Language)(long* value) override;

 private:
  CWideString m_strKey;
  CWideString m_strModuleID;
  CWideString m_strVersion;
  long m_nLanguage = 0;
};
