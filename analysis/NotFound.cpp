#include "analysis/NotFound.h"

#include <string>

#include "com/error/Raise.h"

namespace qm::analysis {

namespace {

constexpr size_t kMostCharacters = 200;

std::wstring Quote(std::wstring_view key) {
  const std::wstring_view shown = key.substr(0, kMostCharacters);
  return L'"' + std::wstring(shown) + (shown.size() < key.size() ? L"...\"" : L"\"");
}

}  // namespace

void RaiseNoElement(const common::CollectionIndex& index) {
  std::wstring text = L"The collection has no such element.";
  if (index.IsKey()) {
    text = L"The collection has no element " + Quote(index.Key()) + L'.';
  } else if (index.Position() != static_cast<size_t>(-1)) {
    text = L"The collection has no element number " + std::to_wstring(index.Position() + 1) + L'.';
  }
  com::Raise(com_exception(E_INVALIDARG, common::WideString(text)));
}

void RaiseNoModule(std::wstring_view key) {
  com::Raise(com_exception(E_INVALIDARG,
                           common::WideString(L"The set has no module " + Quote(key) + L'.')));
}

}  // namespace qm::analysis
