#include "analysis/LoadProgress.h"

#include <algorithm>
#include <utility>

#include "com/error/Raise.h"
#include "common/Bstr.h"

namespace qm::analysis {

namespace {

/// Raises the failure of a function of the client. Frees the texts in `exception`.
[[noreturn]] void RaiseException(HRESULT hr, EXCEPINFO& exception) {
  if (hr == DISP_E_EXCEPTION && exception.pfnDeferredFillIn) {
    exception.pfnDeferredFillIn(&exception);
  }
  const common::UniqueBstr source(exception.bstrSource);
  const common::UniqueBstr help(exception.bstrHelpFile);
  const common::UniqueBstr description(exception.bstrDescription);
  if (hr == DISP_E_EXCEPTION && FAILED(exception.scode)) {
    hr = exception.scode;
  }
  ::SetErrorInfo(0, nullptr);
  common::WideString text(L"The function that is told of progress failed");
  if (description.Get()) {
    text = text + L": " + description.Get();
  }
  com::Raise(com_exception(hr, text + (description.Get() ? L"" : L".")));
}

}  // namespace

void LoadProgress::Report(long number, long total) {
  if (!m_function || number <= std::exchange(m_last, std::max(m_last, number))) {
    return;
  }
  VARIANT arguments[2];  // in reverse order
  arguments[0].vt = VT_I4;
  arguments[0].lVal = total;
  arguments[1].vt = VT_I4;
  arguments[1].lVal = number;
  DISPPARAMS parameters{arguments, nullptr, 2, 0};
  VARIANT result;
  ::VariantInit(&result);
  EXCEPINFO exception{};
  const HRESULT hr = m_function->Invoke(DISPID_VALUE, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD,
                                        &parameters, &result, &exception, nullptr);
  if (FAILED(hr)) {
    RaiseException(hr, exception);
  }
  const bool isCancelled = result.vt == VT_BOOL && result.boolVal == VARIANT_FALSE;
  ::VariantClear(&result);
  if (isCancelled) {
    com::Raise(com_exception(E_ABORT, L"The load was cancelled."));
  }
}

}  // namespace qm::analysis
