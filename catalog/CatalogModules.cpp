#include "catalog/CatalogModules.h"

#include "com/error/Raise.h"
#include "module/MergeModule.h"

CModuleList::CModuleList(size_t count) : m_collection(CComObject<CMergeModules>::Create()) {
  m_collection->Reserve(count);
  m_records.reserve(count);
}

void CModuleList::Add(const std::shared_ptr<CCacheMSM>& record) {
  const auto module = CComObject<CMergeModule>::Create();
  module->Attach(record);
  m_collection->Add(record->Key(), module.Get());
  m_records.push_back(record);
}

bool CModuleList::HasKey(const CWideString& key) const {
  const CUniqueBstr text = MakeBstr(key);
  VARIANT index;
  ::VariantInit(&index);
  index.vt = VT_BSTR;
  index.bstrVal = text.Get();
  CComPtr<IMergeModule> module;
  const HRESULT hr = m_collection->get_Item(index, module.Put());
  if (hr == E_INVALIDARG) {
    return false;
  }
  RaiseIfFailed(hr);
  return true;
}

IMergeModules* CModuleList::NewReference() const noexcept {
  return CComPtr<IMergeModules>(m_collection.Get()).Detach();
}
