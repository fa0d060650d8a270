#include "com/frame/DispatchTable.h"

#include <algorithm>
#include <memory>

#include "common/Bstr.h"
#include "common/ComPtr.h"

namespace qm::com {

namespace {

wchar_t ToLower(wchar_t character) noexcept {
  return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A'))
                                                : character;
}

bool IsLess(std::wstring_view a, std::wstring_view b) noexcept {
  return std::lexicographical_compare(
      a.begin(), a.end(), b.begin(), b.end(),
      [](wchar_t left, wchar_t right) { return ToLower(left) < ToLower(right); });
}

/// Returns the type of a property getter whose only parameter is its return value; VT_EMPTY for any
/// other function.
VARTYPE GetGetterType(const FUNCDESC& function) noexcept {
  const bool isProperty = function.invkind == INVOKE_PROPERTYGET && function.cParams == 1;
  if (!isProperty ||
      (function.lprgelemdescParam[0].paramdesc.wParamFlags & PARAMFLAG_FRETVAL) == 0) {
    return VT_EMPTY;
  }
  const TYPEDESC& parameter = function.lprgelemdescParam[0].tdesc;
  return parameter.vt == VT_PTR ? parameter.lptdesc->vt : static_cast<VARTYPE>(VT_EMPTY);
}

bool IsGetterType(VARTYPE type) noexcept {
  return type == VT_BSTR || type == VT_I4 || type == VT_BOOL;
}

/// Fills `exception` as ITypeInfo::Invoke does for a member that failed.
void Describe(HRESULT hr, EXCEPINFO& exception) noexcept {
  exception = {};
  exception.scode = hr;
  common::ComPtr<IErrorInfo> info;
  if (::GetErrorInfo(0, info.Put()) == S_OK) {
    info->GetDescription(&exception.bstrDescription);
    info->GetHelpFile(&exception.bstrHelpFile);
    info->GetSource(&exception.bstrSource);
    info->GetHelpContext(&exception.dwHelpContext);
  }
}

}  // namespace

DispatchTable::DispatchTable(ITypeInfo& info) {
  // The interface view of a dual interface describes its slots and the versions that it inherits.
  HREFTYPE reference = 0;
  common::ComPtr<ITypeInfo> current;
  if (FAILED(info.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
      FAILED(info.GetRefTypeInfo(reference, current.Put()))) {
    return;
  }
  while (current) {
    AddMembers(*current);
    common::ComPtr<ITypeInfo> base;
    if (SUCCEEDED(current->GetRefTypeOfImplType(0, &reference))) {
      current->GetRefTypeInfo(reference, base.Put());
    }
    current = std::move(base);
  }
  std::sort(m_names.begin(), m_names.end(),
            [](const Name& a, const Name& b) { return IsLess(a.text, b.text); });
  std::sort(m_getters.begin(), m_getters.end(),
            [](const Getter& a, const Getter& b) { return a.member < b.member; });
}

void DispatchTable::AddMembers(ITypeInfo& interfaceInfo) {
  TYPEATTR* attributes = nullptr;
  if (FAILED(interfaceInfo.GetTypeAttr(&attributes))) {
    return;
  }
  const bool isOwn = attributes->guid != IID_IDispatch && attributes->guid != IID_IUnknown;
  const UINT count = isOwn ? attributes->cFuncs : 0;
  interfaceInfo.ReleaseTypeAttr(attributes);
  for (UINT index = 0; index < count; ++index) {
    FUNCDESC* function = nullptr;
    if (SUCCEEDED(interfaceInfo.GetFuncDesc(index, &function))) {
      const auto release = [&](FUNCDESC* held) { interfaceInfo.ReleaseFuncDesc(held); };
      const std::unique_ptr<FUNCDESC, decltype(release)> holder(function, release);
      AddMember(interfaceInfo, *function);
    }
  }
}

void DispatchTable::AddMember(ITypeInfo& info, const FUNCDESC& function) {
  common::UniqueBstr name;
  UINT count = 0;
  if (FAILED(info.GetNames(function.memid, name.Put(), 1, &count)) || count == 0) {
    return;
  }
  m_names.push_back({std::wstring(common::ViewOf(name.Get())), function.memid});
  const VARTYPE type = GetGetterType(function);
  if (IsGetterType(type)) {
    const unsigned slot = static_cast<unsigned>(function.oVft) / sizeof(void*);
    m_getters.push_back({function.memid, slot, type});
  }
}

DISPID DispatchTable::FindMember(std::wstring_view name) const noexcept {
  const auto found = std::lower_bound(
      m_names.begin(), m_names.end(), name,
      [](const Name& entry, std::wstring_view wanted) { return IsLess(entry.text, wanted); });
  return found != m_names.end() && !IsLess(name, found->text) ? found->member : DISPID_UNKNOWN;
}

const DispatchTable::Getter* DispatchTable::FindGetter(DISPID member) const noexcept {
  const auto found =
      std::lower_bound(m_getters.begin(), m_getters.end(), member,
                       [](const Getter& getter, DISPID wanted) { return getter.member < wanted; });
  return found != m_getters.end() && found->member == member ? &*found : nullptr;
}

HRESULT InvokeGetter(void* object, const DispatchTable::Getter& getter, VARIANT& result,
                     EXCEPINFO* exception) noexcept {
  using Slot = HRESULT(STDMETHODCALLTYPE*)(void* self, void* value);
  ::VariantInit(&result);
  const HRESULT hr = (*static_cast<Slot**>(object))[getter.slot](object, &result.lVal);
  if (SUCCEEDED(hr)) {
    result.vt = getter.type;
    return S_OK;
  }
  ::VariantInit(&result);
  if (exception) {
    Describe(hr, *exception);
  }
  return DISP_E_EXCEPTION;
}

}  // namespace qm::com
