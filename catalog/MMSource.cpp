#include "catalog/MMSource.h"

#include "catalog/CatalogModules.h"

namespace qm::catalog {

void CMMSource::Init(const Source& source) {
  m_folder = source.Folder();
  m_records = source.Records();
}

STDMETHODIMP CMMSource::get_Entry(BSTR* value) {
  return AnswerText(value, [&]() -> const common::WideString& { return m_folder.entry; });
}

STDMETHODIMP CMMSource::get_Folder(BSTR* value) {
  return AnswerText(value, [&]() -> const common::WideString& { return m_folder.path; });
}

STDMETHODIMP CMMSource::get_DisplayName(BSTR* value) {
  return AnswerText(value, [&]() -> const common::WideString& { return m_folder.displayName; });
}

STDMETHODIMP CMMSource::get_SecondPass(VARIANT_BOOL* value) {
  return Answer(value,
                [&] { return m_folder.pass == Pass::Second ? VARIANT_TRUE : VARIANT_FALSE; });
}

STDMETHODIMP CMMSource::get_MergeModules(IMergeModules** value) {
  return Answer(value, [&] {
    CatalogModules modules(m_records->size());
    for (const auto& record : *m_records) {
      modules.Add(record);
    }
    return modules.NewReference();
  });
}

}  // namespace qm::catalog
