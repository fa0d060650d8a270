#include "analysis/SetFailure.h"

#include "analysis/ModuleItem.h"

namespace qm::analysis {

void SetFailure::Init(SharedSet set, const LoadFailure& failure) noexcept {
  m_set = std::move(set);
  m_failure = &failure;
}

STDMETHODIMP SetFailure::get_Path(BSTR* value) { return AnswerUtf8(value, m_failure->path); }
STDMETHODIMP SetFailure::get_Text(BSTR* value) { return AnswerUtf8(value, m_failure->text); }
STDMETHODIMP SetFailure::get_Code(long* value) { return AnswerNumber(value, m_failure->code); }
STDMETHODIMP SetFailure::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_failure->module); });
}

}  // namespace qm::analysis
