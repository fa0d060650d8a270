#include "module/MMExclusion.h"

namespace qm::module {

void CMMExclusion::Init(const ExclusionRow& exclusion) {
  m_strKey = exclusion.Key;
  m_strModuleID = exclusion.ExcludedID;
  m_strMinVersion = exclusion.ExcludedMinVersion;
  m_strMaxVersion = exclusion.ExcludedMaxVersion;
  m_strLanguage = common::WideString::Format(L"%d", exclusion.ExcludedLanguage);
  m_strRecordKey = exclusion.Key;
}

STDMETHODIMP CMMExclusion::get_Key(BSTR* value) { return GetText(m_strKey, value); }

STDMETHODIMP CMMExclusion::get_ModuleID(BSTR* value) { return GetText(m_strModuleID, value); }

STDMETHODIMP CMMExclusion::get_MinVersion(BSTR* value) { return GetText(m_strMinVersion, value); }

STDMETHODIMP CMMExclusion::get_MaxVersion(BSTR* value) { return GetText(m_strMaxVersion, value); }

STDMETHODIMP CMMExclusion::get_Language(BSTR* value) { return GetText(m_strLanguage, value); }

}  // namespace qm::module
