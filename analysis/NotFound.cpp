#include "analysis/NotFound.h"

#include <string>

#include "com/error/Raise.h"
#include "merge/FindingList.h"
#include "text/Utf.h"

namespace qm::analysis {

namespace {

[[noreturn]] void Raise(const std::string& text) {
  com::Raise(com_exception(E_INVALIDARG, common::WideString(text::ToWide(text))));
}

}  // namespace

void RaiseNoElement(const common::CollectionIndex& index) {
  if (index.IsKey()) {
    Raise("The collection has no element " + merge::QuoteShort(text::ToUtf8(index.Key())) + '.');
  }
  if (index.Position() != static_cast<size_t>(-1)) {
    Raise("The collection has no element number " + std::to_string(index.Position() + 1) + '.');
  }
  Raise("The collection has no such element.");
}

void RaiseNoModule(std::wstring_view key) {
  Raise("The set has no module " + merge::QuoteShort(text::ToUtf8(key)) + '.');
}

}  // namespace qm::analysis
