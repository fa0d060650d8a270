#include "com/frame/DispatchImpl.h"

#include <utility>

#include "common/ComPtr.h"

namespace {

void HandOnAsDispatch(VARIANT& result) noexcept {
  IDispatch* dispatch = nullptr;
  if (result.vt == VT_UNKNOWN && result.punkVal &&
      SUCCEEDED(result.punkVal->QueryInterface(__uuidof(IDispatch),
                                               reinterpret_cast<void**>(&dispatch)))) {
    result.punkVal->Release();
    result.vt = VT_DISPATCH;
    result.pdispVal = dispatch;
  }
}

}  // namespace

HRESULT CTypeInfoHolder::Load() noexcept {
  if (m_info) {
    return S_OK;
  }
  CComPtr<ITypeLib> library;
  HRESULT hr = TypeLibraries::Instance().Get(m_library, library.Put());
  if (SUCCEEDED(hr)) {
    hr = library->GetTypeInfoOfGuid(m_iid, &m_info);
  }
  if (SUCCEEDED(hr)) {
    Enlist();
  }
  return hr;
}

void CTypeInfoHolder::End() noexcept { std::exchange(m_info, nullptr)->Release(); }

HRESULT CTypeInfoHolder::GetTypeInfo(ITypeInfo** out) noexcept {
  const HRESULT hr = Load();
  if (SUCCEEDED(hr)) {
    m_info->AddRef();
    *out = m_info;
  }
  return hr;
}

HRESULT CTypeInfoHolder::GetIdsOfNames(REFIID iid, wchar_t** names, UINT count,
                                       DISPID* ids) noexcept {
  if (iid != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (!names || !ids || count == 0) {
    return E_INVALIDARG;
  }
  const HRESULT hr = Load();
  return SUCCEEDED(hr) ? m_info->GetIDsOfNames(names, count, ids) : hr;
}

HRESULT CTypeInfoHolder::Invoke(void* object, DISPID member, REFIID iid, WORD flags,
                                DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                UINT* badArgument) noexcept {
  if (iid != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (!parameters) {
    return E_INVALIDARG;
  }
  HRESULT hr = Load();
  if (FAILED(hr)) {
    return hr;
  }
  // A member that fails without an error object must not be explained by an older one.
  ::SetErrorInfo(0, nullptr);
  if (flags == DISPATCH_METHOD) {
    flags |= DISPATCH_PROPERTYGET;
  }
  hr = m_info->Invoke(object, member, flags, parameters, result, exception, badArgument);
  if (SUCCEEDED(hr) && result) {
    HandOnAsDispatch(*result);
  }
  return hr;
}
