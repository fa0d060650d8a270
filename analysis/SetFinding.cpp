#include "analysis/SetFinding.h"

#include <memory>
#include <string>
#include <vector>

#include "analysis/ModuleItem.h"
#include "analysis/ModuleRows.h"
#include "analysis/SetCollection.h"
#include "com/error/Raise.h"
#include "common/UniqueHandle.h"

namespace qm::analysis {

namespace {

struct ArrayTraits {
  using Handle = SAFEARRAY*;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle array) noexcept { ::SafeArrayDestroy(array); }
};

/// Stores texts as a SAFEARRAY of VARIANTs, which script hosts can read.
HRESULT StoreTextArray(const std::vector<std::string>& texts, VARIANT& value) {
  common::UniqueHandle<ArrayTraits> array(
      ::SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(texts.size())));
  com::RaiseIfFailed(array ? S_OK : E_OUTOFMEMORY);
  auto* element = static_cast<VARIANT*>(array.Get()->pvData);
  for (const std::string& text : texts) {
    element->bstrVal = com::AllocateBstr(text::ToWide(text)).Release();
    element->vt = VT_BSTR;
    ++element;
  }
  value.parray = array.Release();
  value.vt = VT_ARRAY | VT_VARIANT;
  return S_OK;
}

}  // namespace

void SetFinding::Init(SharedSet set, const merge::Finding& finding) {
  m_set = std::move(set);
  m_finding = finding;
}

STDMETHODIMP SetFinding::get_Code(BSTR* value) { return AnswerUtf8(value, m_finding.code); }
STDMETHODIMP SetFinding::get_Text(BSTR* value) { return AnswerUtf8(value, m_finding.text); }

STDMETHODIMP SetFinding::get_ModuleKeys(VARIANT* value) {
  return FillOut(value, [&] { return StoreTextArray(m_finding.modules, *value); });
}

STDMETHODIMP SetFinding::get_Modules(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_finding.positions); });
}

STDMETHODIMP SetFinding::get_Severity(BSTR* value) {
  return AnswerUtf8(value, merge::GetSeverityName(m_finding.severity));
}
STDMETHODIMP SetFinding::get_MergeErrorType(long* value) {
  return AnswerNumber(value, m_finding.mergeError);
}

STDMETHODIMP SetFinding::get_Required(ISetRequirement** value) {
  return Answer(value, [&]() -> ISetRequirement* {
    return m_finding.required ? com::MakeObject<SetRequirement>(m_set, m_finding.positions.front(),
                                                                *m_finding.required)
                              : nullptr;
  });
}

STDMETHODIMP SetFinding::get_File(BSTR* value) { return AnswerUtf8(value, m_finding.file); }
STDMETHODIMP SetFinding::get_Folder(BSTR* value) { return AnswerUtf8(value, m_finding.folder); }
STDMETHODIMP SetFinding::get_Table(BSTR* value) { return AnswerUtf8(value, m_finding.table); }
STDMETHODIMP SetFinding::get_RowKey(BSTR* value) { return AnswerUtf8(value, m_finding.key); }

STDMETHODIMP SetFinding::get_Versions(VARIANT* value) {
  return FillOut(value, [&] { return StoreTextArray(m_finding.versions, *value); });
}

STDMETHODIMP SetFinding::get_Values(ISetFindingValues** value) {
  return Answer(value, [&] {
    const auto values = std::make_shared<const std::vector<merge::FindingValue>>(m_finding.values);
    return MakeCollection<ISetFindingValues, ISetFindingValue>(
        values->size(),
        [set = m_set, values](size_t at) {
          return com::MakeObject<SetFindingValue>(set, (*values)[at]);
        },
        [values](size_t at) { return (*values)[at].column; });
  });
}

void SetFindingValue::Init(SharedSet set, const merge::FindingValue& value) {
  m_set = std::move(set);
  m_value = value;
}

STDMETHODIMP SetFindingValue::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_value.module); });
}
STDMETHODIMP SetFindingValue::get_Column(BSTR* value) { return AnswerUtf8(value, m_value.column); }
STDMETHODIMP SetFindingValue::get_Value(BSTR* value) { return AnswerUtf8(value, m_value.value); }

}  // namespace qm::analysis
