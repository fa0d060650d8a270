#include "catalog/QueryArgument.h"

#include "com/error/Raise.h"
#include "com/frame/TextListArgument.h"
#include "common/CollectionIndex.h"

namespace qm::catalog {

ModuleQuery ParseQueryArgument(const VARIANT& argument) {
  constexpr const wchar_t* kComplaint =
      L"The query is neither a module key nor an array of key and version.";
  const com::TextListArgument query = com::ParseTextList(argument, kComplaint);
  if (query.isList && query.texts.size() != 2) {
    com::Raise(com_exception(E_INVALIDARG, kComplaint));
  }
  return ParseModuleKey(query.texts.front(),
                        query.isList ? query.texts.back() : common::WideString());
}

void StoreCount(long count, VARIANT* out) noexcept {
  out = const_cast<VARIANT*>(common::ResolveVariantReferences(out));
  if (!out || (out->vt == VT_ERROR && out->scode == DISP_E_PARAMNOTFOUND)) {
    return;
  }
  if (out->vt == (VT_I4 | VT_BYREF)) {
    *out->plVal = count;
    return;
  }
  ::VariantClear(out);
  out->vt = VT_I4;
  out->lVal = count;
}

}  // namespace qm::catalog
