#include "client/catalog/ModuleCollection.h"

#include <gtest/gtest.h>

#include "com/frame/ComObject.h"
#include "module/MergeModule.h"
#include "tests/support/Variants.h"

namespace qm::tests {

namespace {

TEST(ModuleCollectionTest, ElementsAreFoundByNumberAndCountedAndEnumeratedInOrder) {
  mmcat::ModuleObjects modules;
  for (int i = 0; i < 3; ++i) {
    modules.emplace_back(com::ComObject<module::CMergeModule>::Create().Get());
  }
  auto collection = mmcat::MakeModuleCollection(modules);

  long count = 0;
  EXPECT_EQ(S_OK, collection->get_Count(&count));
  EXPECT_EQ(3, count);
  common::ComPtr<IMergeModule> item;
  for (long number = 1; number <= 3; ++number) {
    EXPECT_EQ(S_OK, collection->get_Item(Variant(number), item.Put()));
    EXPECT_EQ(modules[number - 1].Get(), item.Get());
  }
  for (const Variant& wrong : {Variant(0L), Variant(4L), Variant(L"Nobody.1:0")}) {
    EXPECT_EQ(E_INVALIDARG, collection->get_Item(wrong, item.Put()));
    EXPECT_FALSE(item);
  }

  common::ComPtr<IEnumVARIANT> enumerator;
  ASSERT_EQ(S_OK, collection->get_Enumerator(enumerator.Put()));
  collection.Release();  // the enumerator outlives it
  EXPECT_EQ(S_OK, enumerator->Skip(1));
  Variant values[3];
  ULONG fetched = 0;
  EXPECT_EQ(S_FALSE, enumerator->Next(3, values, &fetched));
  ASSERT_EQ(2u, fetched);
  for (size_t i = 0; i < fetched; ++i) {
    EXPECT_EQ(modules[i + 1].Get(), values[i].pdispVal);
  }
}

}  // namespace

}  // namespace qm::tests
