#include "module/RefCollectionImpl.h"

#include "tests/support/CollectionFixture.h"

namespace qm::tests {

namespace {

using RefCollectionImplTest = CollectionFixture;

TEST_F(RefCollectionImplTest, AnItemIsFoundByItsPositionAndByItsKeyInAnyCase) {
  Fill({L"Alpha", L"1", L""});
  EXPECT_EQ(L"Alpha", At(1));
  EXPECT_EQ(L"", At(3));
  for (const long position : {0L, 4L, -1L, LONG_MIN}) {
    EXPECT_EQ(L"nothing", At(position)) << position;
  }
  EXPECT_EQ(L"Alpha", At(L"aLPHA"));
  EXPECT_EQ(L"1", At(L"1"));
  EXPECT_EQ(L"", At(L""));
  EXPECT_EQ(L"nothing", At(L"2"));
  EXPECT_EQ(L"nothing", At(Around(VT_NULL, 0LL)));
}

TEST_F(RefCollectionImplTest, NullPointersAreRefused) {
  Fill({L"A"});
  EXPECT_EQ(E_POINTER, m_collection->get_Item(Variant(1), nullptr));
  EXPECT_EQ(E_POINTER, m_collection->get_Count(nullptr));
  EXPECT_EQ(E_POINTER, m_collection->get__NewEnum(nullptr));
  EXPECT_EQ(E_POINTER, m_collection->get_Enumerator(nullptr));
  const common::ComPtr<IEnumVARIANT> enumerator = Enumerator();
  VARIANT values[2];
  ULONG fetched = 9;
  LeaveErrorObject(L"older");
  EXPECT_EQ(E_POINTER, enumerator->Next(1, nullptr, &fetched));
  EXPECT_FALSE(TakeErrorObject());
  EXPECT_EQ(E_POINTER, enumerator->Next(2, values, nullptr));
  EXPECT_EQ(E_POINTER, enumerator->Next(0, values, nullptr));
  EXPECT_EQ(E_POINTER, enumerator->Clone(nullptr));
  EXPECT_EQ(Names{L"A"}, Rest(*enumerator));  // nothing was skipped
}

TEST_F(RefCollectionImplTest, DoubledKeysAreListedAndTheFirstIsFound) {
  Fill({L"b", L"key", L"a", L"KEY"});
  EXPECT_EQ(L"key", At(L"KEY"));
  EXPECT_EQ(L"KEY", At(4));
  EXPECT_EQ(S_OK, m_collection->Remove(1));
  EXPECT_EQ(L"KEY", At(L"key"));
  EXPECT_EQ((Names{L"b", L"a", L"KEY"}), Rest(*Enumerator()));
}

TEST_F(RefCollectionImplTest, RemovedItemsAreReleasedFromLastToFirst) {
  Fill({L"A", L"B", L"C", L"D"});
  EXPECT_EQ(E_INVALIDARG, m_collection->Remove(4));
  EXPECT_EQ(S_OK, m_collection->Remove(1));
  EXPECT_EQ(Names{L"B"}, g_gone);
  EXPECT_EQ(L"C", At(2));
  EXPECT_EQ(L"A", At(L"a"));
  EXPECT_EQ(L"D", At(L"d"));
  EXPECT_EQ(L"nothing", At(L"B"));
  common::ComPtr<IMMDialog> held;
  ASSERT_EQ(S_OK, m_collection->get_Item(Variant(2), held.Put()));
  EXPECT_EQ(S_OK, m_collection->RemoveAll());
  EXPECT_EQ((Names{L"B", L"D", L"A"}), g_gone);
  EXPECT_EQ(0, Count());
  EXPECT_EQ(L"nothing", At(L"A"));
  held.Release();
  EXPECT_EQ(L"C", g_gone.back());
  Fill({L"E", L"F"});
  EXPECT_EQ(L"F", At(L"f"));
  m_collection.Release();
  EXPECT_EQ((Names{L"B", L"D", L"A", L"C", L"F", L"E"}), g_gone);
}

TEST_F(RefCollectionImplTest, RemoveAndRemoveAllFollowTheInterfaceMethodsInTheTable) {
  Fill({L"A", L"B"});
  // Seven slots of IDispatch and the four of the interface, then Remove, RemoveAll, the destructor.
  IMMDialogs* const object = m_collection.Get();
  void** const slots = *reinterpret_cast<void***>(object);
  EXPECT_EQ(S_OK,
            reinterpret_cast<HRESULT(__thiscall*)(IMMDialogs*, size_t)>(slots[11])(object, 0));
  EXPECT_EQ(Names{L"B"}, Rest(*Enumerator()));
  EXPECT_EQ(S_OK, reinterpret_cast<HRESULT(__thiscall*)(IMMDialogs*)>(slots[12])(object));
  EXPECT_EQ(0, Count());
}

TEST_F(RefCollectionImplTest, OutOfMemoryChangesNothing) {
  Fill({L"A", L"B"});
  common::ComPtr<IUnknown> enumerator;
  const auto expectTwo = [this] {
    EXPECT_EQ(2, Count());
    EXPECT_EQ(L"B", At(L"b"));
  };
  heap::SweepFaults([&] { return m_collection->get__NewEnum(enumerator.Put()); }, expectTwo);
  heap::SweepFaults([&] { return m_collection->RemoveAll(); }, expectTwo);
  enumerator.Release();
  Fill({L"A", L"B"});
  heap::SweepFaults([&] { return m_collection->Remove(0); }, expectTwo);
}

}  // namespace

}  // namespace qm::tests
