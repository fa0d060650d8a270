#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/catalog/ServerFailure.h"
#include "common/Bstr.h"
#include "text/Utf.h"

namespace mmcat {

/// Owns a VARIANT, which is VT_EMPTY by default. Members throw ServerFailure.
class Value {
 public:
  Value() { ::VariantInit(&m_value); }
  explicit Value(long number) : Value() {
    m_value.vt = VT_I4;
    m_value.lVal = number;
  }
  explicit Value(std::wstring_view text) : Value() {
    m_value.bstrVal = qm::common::TryAllocateBstr(text);
    ThrowIfFailed(m_value.bstrVal ? S_OK : E_OUTOFMEMORY);
    m_value.vt = VT_BSTR;
  }
  /// An array of UTF-8 texts.
  explicit Value(const std::vector<std::string>& texts) : Value() {
    m_value.parray = ::SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size()));
    ThrowIfFailed(m_value.parray ? S_OK : E_OUTOFMEMORY);
    m_value.vt = VT_ARRAY | VT_BSTR;
    auto* element = static_cast<BSTR*>(m_value.parray->pvData);
    for (const std::string& text : texts) {
      *element = qm::common::TryAllocateBstr(qm::text::ToWide(text));
      ThrowIfFailed(*element++ ? S_OK : E_OUTOFMEMORY);
    }
  }
  Value(Value&& other) noexcept : m_value(other.m_value) { ::VariantInit(&other.m_value); }
  ~Value() { ::VariantClear(&m_value); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  Value& operator=(Value&&) = delete;

  VARIANT& Get() { return m_value; }

  /// The object; null if this is Nothing.
  IDispatch* Object() const { return m_value.vt == VT_DISPATCH ? m_value.pdispVal : nullptr; }

  /// The number; no value if this is something else.
  std::optional<long> Number() const {
    return m_value.vt == VT_I4 ? std::optional<long>(m_value.lVal) : std::nullopt;
  }

  /// The value as UTF-8 text; empty for null.
  std::string Text() {
    if (m_value.vt == VT_NULL || m_value.vt == VT_EMPTY) {
      return {};
    }
    ThrowIfFailed(::VariantChangeType(&m_value, &m_value, 0, VT_BSTR));
    return qm::text::ToUtf8(qm::common::ViewOf(m_value.bstrVal));
  }

  /// The texts of an array of VARIANTs.
  std::vector<std::string> Texts() const {
    ThrowIfFailed(m_value.vt == (VT_ARRAY | VT_VARIANT) ? S_OK : DISP_E_TYPEMISMATCH);
    std::vector<std::string> texts;
    LONG last = -1;
    ThrowIfFailed(::SafeArrayGetUBound(m_value.parray, 1, &last));
    for (LONG index = 0; index <= last; ++index) {
      Value element;
      ThrowIfFailed(::SafeArrayGetElement(m_value.parray, &index, &element.Get()));
      texts.push_back(element.Text());
    }
    return texts;
  }

 private:
  VARIANT m_value;
};

}  // namespace mmcat
