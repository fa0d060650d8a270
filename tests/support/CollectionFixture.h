#pragma once

#include <string>
#include <vector>

#include "module/Collections.h"
#include "module/MMDialog.h"
#include "tests/support/Testing.h"
#include "tests/support/Variants.h"

namespace qm::tests {

using Names = std::vector<std::wstring>;

/// Names of the destroyed items, in the order of their destruction.
inline Names g_gone;

/// A dialog that records its destruction.
class MortalDialog : public module::CMMDialog {
 public:
  MortalDialog() = default;
  MortalDialog(const MortalDialog&) = delete;
  MortalDialog& operator=(const MortalDialog&) = delete;
  ~MortalDialog() { g_gone.emplace_back(std::wstring_view(CollectionKey())); }
};

inline std::wstring NameOf(IMMDialog& item) {
  common::UniqueBstr name;
  item.get_Name(name.Put());
  return std::wstring(common::ViewOf(name.Get()));
}

/// The names from an enumerator's cursor to the end.
inline Names Rest(IEnumVARIANT& enumerator) {
  Names names;
  VARIANT value{};
  while (enumerator.Next(1, &value, nullptr) == S_OK) {
    EXPECT_EQ(VT_DISPATCH, value.vt);
    common::ComPtr<IMMDialog> item;
    EXPECT_EQ(S_OK, value.pdispVal->QueryInterface(item.Put()));
    names.push_back(NameOf(*item));
    ::VariantClear(&value);
  }
  return names;
}

/// A collection of dialogs. Checks after the test that nothing of it is left.
class CollectionFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    g_gone.clear();
    g_gone.reserve(16);  // so that destroying an item allocates nothing
  }
  void TearDown() override {
    m_collection.Release();
    EXPECT_EQ(0, com::DllLock::Count()) << "objects are left";
  }

  /// Adds an item for each name, with the name as its key.
  void Fill(const Names& names) {
    for (const std::wstring& name : names) {
      const auto item = com::ComObject<MortalDialog>::Create();
      item->Init(std::wstring_view(name));
      m_collection->Add(item->CollectionKey(), item.Get());
    }
  }

  long Count() {
    long count = -1;
    EXPECT_EQ(S_OK, m_collection->get_Count(&count));
    return count;
  }

  /// The name of the item at an index; "nothing" if there is no item.
  std::wstring At(const VARIANT& index) {
    auto* item = reinterpret_cast<IMMDialog*>(this);
    const HRESULT hr = m_collection->get_Item(index, &item);
    EXPECT_EQ(item ? S_OK : E_INVALIDARG, hr);
    return item ? NameOf(*common::ComPtr<IMMDialog>::Adopt(item)) : L"nothing";
  }
  std::wstring At(long number) { return At(Variant(number)); }
  std::wstring At(const wchar_t* key) { return At(Variant(key)); }

  common::ComPtr<IEnumVARIANT> Enumerator() {
    common::ComPtr<IEnumVARIANT> enumerator;
    EXPECT_EQ(S_OK, m_collection->get_Enumerator(enumerator.Put()));
    return enumerator;
  }

  common::ComPtr<com::ComObject<module::CMMDialogs>> m_collection =
      com::ComObject<module::CMMDialogs>::Create();
};

}  // namespace qm::tests
