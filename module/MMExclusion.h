#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"
#include "module/TableRows.h"

/// A module that a module excludes. Its language is a text, unlike that of a dependency.
class CMMExclusion : public CMMItem<IMMExclusion> {
 public:
  void Init(const ExclusionRecord& exclusion);
  const CWideString& CollectionKey() const noexcept { return m_strKey; }

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_MinVersion)(BSTR* value) override;
  STDMETHOD(get_MaxVersion)(BSTR* value) override;
  STDMETHOD(get_Language)(BSTR* value) override;

 private:
  CWideString m_strKey;
  CWideString m_strModuleID;
  CWideString m_strMinVersion;
  CWideString m_strMaxVersion;
  CWideString m_strLanguage;
  CWideString m_strRecordKey;  ///< the key of the row's record; not used by any property
};
