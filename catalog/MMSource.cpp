#include "catalog/MMSource.h"

#include "catalog/ModuleList.h"
#include "common/Bstr.h"

void CMMSource::Init(const CSource& source) {
  m_folder = source.Description();
  m_records = source.Records();
}

STDMETHODIMP CMMSource::get_Entry(BSTR* value) { return GiveBstr(m_folder.entry, value); }

STDMETHODIMP CMMSource::get_Folder(BSTR* value) { return GiveBstr(m_folder.folder, value); }

STDMETHODIMP CMMSource::get_DisplayName(BSTR* value) {
  return GiveBstr(m_folder.displayName, value);
}

STDMETHODIMP CMMSource::get_SecondPass(VARIANT_BOOL* value) {
  if (!value) {
    return E_POINTER;
  }
  *value = m_folder.secondPass ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

STDMETHODIMP CMMSource::get_MergeModules(IMergeModules** value) {
  return MethodBoundary([&]() -> HRESULT {
    if (!value) {
      return E_POINTER;
    }
    *value = nullptr;
    CModuleList modules(m_records->size());
    for (const auto& record : *m_records) {
      modules.Add(record);
    }
    *value = modules.NewReference();
    return S_OK;
  });
}
