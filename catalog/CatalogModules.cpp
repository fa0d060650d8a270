#include "catalog/CatalogModules.h"

#include "com/error/Raise.h"
#include "module/MergeModule.h"

namespace qm::catalog {

CatalogModules::CatalogModules(size_t count)
    : m_collection(com::ComObject<module::CMergeModules>::Create()) {
  m_collection->Reserve(count);
  m_records.reserve(count);
}

void CatalogModules::Add(const std::shared_ptr<module::CCacheMSM>& record) {
  const auto module = com::ComObject<module::CMergeModule>::Create();
  module->SetRecord(record);
  m_collection->Add(record->Key(), module.Get());
  m_records.push_back(record);
}

bool CatalogModules::HasKey(const common::WideString& key) const {
  const common::UniqueBstr text = com::AllocateBstr(key);
  VARIANT index;
  ::VariantInit(&index);
  index.vt = VT_BSTR;
  index.bstrVal = text.Get();
  common::ComPtr<IMergeModule> module;
  const HRESULT hr = m_collection->get_Item(index, module.Put());
  if (hr == E_INVALIDARG) {
    return false;
  }
  com::RaiseIfFailed(hr);
  return true;
}

IMergeModules* CatalogModules::NewReference() const noexcept {
  return common::ComPtr<IMergeModules>(m_collection.Get()).Detach();
}

}  // namespace qm::catalog
