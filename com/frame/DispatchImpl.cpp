#include "com/frame/DispatchImpl.h"

#include <cstddef>
#include <memory>
#include <utility>

#include "com/error/ErrorHandler.h"
#include "common/ComPtr.h"
#include "common/ExclusiveLock.h"
#include "idl/host.h"

namespace qm::com {

namespace {

// Types that cross the boundary of the DLL must have the layout that callers expect.
constexpr bool kIs64Bit = sizeof(void*) == 8;
static_assert(sizeof(VARIANT) == (kIs64Bit ? 24 : 16) && alignof(VARIANT) == 8);
static_assert(offsetof(VARIANT, lVal) == 8);
static_assert(sizeof(DISPPARAMS) == (kIs64Bit ? 24 : 16));
static_assert(sizeof(EXCEPINFO) == (kIs64Bit ? 64 : 32));
static_assert(sizeof(GUID) == 16 && alignof(GUID) == 4);
static_assert(sizeof(long) == 4 && sizeof(VARIANT_BOOL) == 2 && sizeof(ProjectKind) == 4);

void ConvertToDispatch(VARIANT& result) noexcept {
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

HRESULT TypeInfoHolder::Load() noexcept {
  if (m_info) {
    return S_OK;
  }
  common::ComPtr<ITypeLib> library;
  HRESULT hr = TypeLibraries::Instance().Get(m_library, library.Put());
  if (FAILED(hr)) {
    return hr;
  }
  common::ComPtr<ITypeInfo> info;
  hr = library->GetTypeInfoOfGuid(m_iid, info.Put());
  if (FAILED(hr)) {
    return hr;
  }
  return RunAtBoundary(GUID_NULL, [&] {
    auto table = std::make_unique<DispatchTable>(*info);
    const common::ExclusiveLock lock(m_lock);
    if (!m_info) {
      m_table = table.release();
      m_info = info.Detach();
      Enlist();
    }
    return S_OK;
  });
}

void TypeInfoHolder::End() noexcept {
  delete std::exchange(m_table, nullptr);
  m_info.exchange(nullptr)->Release();
}

HRESULT TypeInfoHolder::GetTypeInfo(ITypeInfo** out) noexcept {
  const HRESULT hr = Load();
  if (SUCCEEDED(hr)) {
    *out = common::ComPtr<ITypeInfo>(m_info).Detach();
  }
  return hr;
}

HRESULT TypeInfoHolder::GetIdsOfNames(REFIID iid, wchar_t** names, UINT count,
                                      DISPID* ids) noexcept {
  if (iid != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (!names || !ids || count == 0) {
    return E_INVALIDARG;
  }
  const HRESULT hr = Load();
  if (FAILED(hr)) {
    return hr;
  }
  if (count == 1 && names[0]) {
    ids[0] = m_table->FindMember(names[0]);
    if (ids[0] != DISPID_UNKNOWN) {
      return S_OK;
    }
  }
  return m_info.load()->GetIDsOfNames(names, count, ids);
}

HRESULT TypeInfoHolder::Invoke(void* object, DISPID member, REFIID iid, WORD flags,
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
  // A member that fails without an error object must not report an older one.
  ::SetErrorInfo(0, nullptr);
  if (flags == DISPATCH_METHOD) {
    flags |= DISPATCH_PROPERTYGET;
  }
  const bool mayBeGetter = (flags & DISPATCH_PROPERTYGET) != 0 && result &&
                           parameters->cArgs == 0 && parameters->cNamedArgs == 0;
  if (const auto* const getter = mayBeGetter ? m_table->FindGetter(member) : nullptr) {
    return InvokeGetter(object, *getter, *result, exception);
  }
  hr = m_info.load()->Invoke(object, member, flags, parameters, result, exception, badArgument);
  if (SUCCEEDED(hr) && result) {
    ConvertToDispatch(*result);
  }
  return hr;
}

}  // namespace qm::com
