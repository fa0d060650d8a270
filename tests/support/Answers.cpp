#include "tests/support/Answers.h"

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/WideString.h"

namespace qm::tests {

HRESULT Invoke(IDispatch* object, const wchar_t* name, WORD flags, VARIANT* argument,
               VARIANT* result, std::wstring* description) {
  DISPID id = 0;
  auto* text = const_cast<wchar_t*>(name);
  HRESULT hr = object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &id);
  if (FAILED(hr)) {
    return hr;
  }
  DISPPARAMS parameters{argument, nullptr, argument ? 1u : 0u, 0};
  EXCEPINFO exception{};
  hr =
      object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, flags, &parameters, result, &exception, nullptr);
  const common::UniqueBstr told(exception.bstrDescription), source(exception.bstrSource),
      helpFile(exception.bstrHelpFile);
  if (description) {
    *description = common::ViewOf(told.Get());
  }
  return hr == DISP_E_EXCEPTION ? exception.scode : hr;
}

namespace {

std::wstring TakeText(HRESULT (STDMETHODCALLTYPE IErrorInfo::*get)(BSTR*)) {
  common::ComPtr<IErrorInfo> info;
  common::UniqueBstr text;
  if (::GetErrorInfo(0, info.Put()) == S_OK) {
    (info.Get()->*get)(text.Put());
  }
  return std::wstring(common::ViewOf(text.Get()));
}

}  // namespace

std::wstring TakeDescription() { return TakeText(&IErrorInfo::GetDescription); }
std::wstring TakeSource() { return TakeText(&IErrorInfo::GetSource); }

std::wstring FailureText(HRESULT hr, const std::wstring& description) {
  return common::WideString::Format(L"0x%08X %s", hr, description.c_str()).c_str();
}

bool IsFailure(const std::wstring& answer) { return answer.compare(0, 3, L"0x8") == 0; }

namespace {

/// A property by its slot or its name; the text is that of a failure, if any.
std::wstring GetValue(IDispatch* object, const Member& member, size_t slot, Route route,
                      VARIANT* value) {
  std::wstring description;
  if (route == Route::Dispatch) {
    const HRESULT hr =
        Invoke(object, member.name.c_str(), DISPATCH_PROPERTYGET, nullptr, value, &description);
    return FAILED(hr) ? FailureText(hr, description) : L"";
  }
  // A method that fails clears what was in its out parameter.
  wchar_t leftover[] = L"leftover";
  const bool pointer = member.type == VT_BSTR || member.type == VT_DISPATCH;
  value->byref = pointer ? leftover : nullptr;
  const HRESULT hr = CallSlot(object, slot, static_cast<void*>(&value->byref));
  if (SUCCEEDED(hr)) {
    value->vt = member.type;
    return L"";
  }
  return FailureText(hr, TakeDescription()) + (pointer && value->byref ? L" and a value" : L"");
}

/// By the slots Count and Item, or as scripts do, by enumeration.
std::wstring ReadCollection(IDispatch* collection, const std::wstring& items, Route route) {
  std::wstring all;
  const auto append = [&](IDispatch* item) {
    all += (all.empty() ? L"" : L" / ") + ReadItem(item, items, route);
  };
  HRESULT hr = S_OK;
  if (route == Route::VirtualTable) {
    long count = 0;
    hr = CallSlot(collection, 2, &count);
    for (long number = 1; SUCCEEDED(hr) && number <= count; ++number) {
      common::ComPtr<IDispatch> item;
      hr = CallSlot(collection, 1, static_cast<VARIANT>(Variant(number)), item.Put());
      if (item) {
        append(item.Get());
      }
    }
  } else {
    Variant enumerator;
    common::ComPtr<IEnumVARIANT> elements;
    hr = Invoke(collection, L"_NewEnum", DISPATCH_PROPERTYGET, nullptr, &enumerator);
    if (SUCCEEDED(hr)) {
      hr = enumerator.punkVal->QueryInterface(__uuidof(IEnumVARIANT),
                                              reinterpret_cast<void**>(elements.Put()));
    }
    for (Variant item; SUCCEEDED(hr) && elements->Next(1, &item, nullptr) == S_OK;) {
      append(item.pdispVal);
      ::VariantClear(&item);
    }
  }
  return FAILED(hr) ? FailureText(hr, L"") : all;
}

std::wstring ReadProperty(IDispatch* object, const Member& member, size_t slot, Route route) {
  Variant value;
  std::wstring failure = GetValue(object, member, slot, route, &value);
  if (!failure.empty()) {
    return failure;
  }
  if (value.vt != member.type) {
    return L"type " + std::to_wstring(value.vt);
  }
  switch (value.vt) {
    case VT_BSTR:
      return value.bstrVal ? std::wstring(common::ViewOf(value.bstrVal)) : L"(null)";
    case VT_I4:
      return std::to_wstring(value.lVal);
    case VT_BOOL:
      return value.boolVal == VARIANT_TRUE    ? L"True"
             : value.boolVal == VARIANT_FALSE ? L"False"
                                              : L"no boolean";
    default:
      return value.pdispVal ? ReadCollection(value.pdispVal, member.items, route) : L"(none)";
  }
}

}  // namespace

std::wstring ReadItem(IDispatch* item, const std::wstring& interfaceName, Route route) {
  const std::vector<Member> members = MembersOf(interfaceName);
  std::wstring all;
  for (size_t i = 0; i < members.size(); ++i) {
    all += (i == 0 ? L"" : L";") + ReadProperty(item, members[i], i + 1, route);
  }
  return all;
}

Answers ReadModule(IDispatch* module, Route route) {
  static const std::vector<Member> members = MembersOf(L"IMergeModuleTavik");
  Answers answers;
  for (size_t i = 0; i < members.size(); ++i) {
    if (members[i].type != VT_EMPTY) {
      answers[members[i].name] = ReadProperty(module, members[i], i + 1, route);
    }
  }
  return answers;
}

std::wstring ReadModule(IDispatch* module, const std::wstring& property) {
  const std::vector<Member> members = MembersOf(L"IMergeModuleTavik");
  size_t slot = 1;
  while (members.at(slot - 1).name != property) {
    ++slot;
  }
  return ReadProperty(module, members[slot - 1], slot, Route::VirtualTable);
}

}  // namespace qm::tests
