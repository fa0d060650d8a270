#pragma once

#include <optional>
#include <string_view>

#include "analysis/SetData.h"
#include "com/component/ComponentObject.h"
#include "common/NullInteger.h"
#include "idl/mergeset.h"
#include "text/Utf.h"

namespace qm::analysis {

/// Base of all objects of a set. They report failures as MergeSet.
template <class Interface>
class SetObject : public com::ComponentObject<Interface, &CLSID_MergeSet> {
 protected:
  /// Answers a property with UTF-8 text.
  HRESULT AnswerUtf8(BSTR* out, std::string_view utf8) const noexcept {
    return this->AnswerText(out, [&] { return text::ToWide(utf8); });
  }
  HRESULT AnswerNumber(long* out, std::optional<long> number) const noexcept {
    return this->Answer(out, [&] { return number.value_or(common::kNullInteger); });
  }
  HRESULT AnswerFlag(VARIANT_BOOL* out, bool flag) const noexcept {
    return this->Answer(out, [&] { return flag ? VARIANT_TRUE : VARIANT_FALSE; });
  }
};

}  // namespace qm::analysis
