#include "module/MMDependency.h"

namespace qm::module {

void CMMDependency::Init(const DependencyRow& dependency) {
  m_strKey = dependency.Key;
  m_strModuleID = dependency.RequiredID;
  m_strVersion = dependency.RequiredVersion;
  m_nLanguage = dependency.RequiredLanguage;
}

STDMETHODIMP CMMDependency::get_Key(BSTR* value) { return GetText(m_strKey, value); }

STDMETHODIMP CMMDependency::get_ModuleID(BSTR* value) { return GetText(m_strModuleID, value); }

STDMETHODIMP CMMDependency::get_Version(BSTR* value) { return GetText(m_strVersion, value); }

STDMETHODIMP CMMDependency::get_Language(long* value) {
  *value = m_nLanguage;
  return S_OK;
}

}  // namespace qm::module
