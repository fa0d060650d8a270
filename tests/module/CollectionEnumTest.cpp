#include "module/CollectionEnum.h"

#include "tests/support/CollectionFixture.h"

namespace qm::tests {

namespace {

using CollectionEnumTest = CollectionFixture;

TEST_F(CollectionEnumTest, NextReturnsAtMostWhatIsLeft) {
  Fill({L"A", L"B", L"C", L"D"});
  const common::ComPtr<IEnumVARIANT> enumerator = Enumerator();
  struct Call {
    ULONG wanted;
    HRESULT hr;
    ULONG fetched;
  };
  for (const Call& call :
       {Call{0, S_OK, 0}, {1, S_OK, 1}, {2, S_OK, 2}, {3, S_FALSE, 1}, {1, S_FALSE, 0}}) {
    VARIANT values[5]{};
    values[call.fetched].vt = VT_ILLEGAL;
    ULONG fetched = 77;
    EXPECT_EQ(call.hr, enumerator->Next(call.wanted, values, &fetched)) << call.wanted;
    EXPECT_EQ(call.fetched, fetched) << call.wanted;
    EXPECT_EQ(VT_ILLEGAL, values[call.fetched].vt) << call.wanted;
    while (fetched-- > 0) {
      ::VariantClear(&values[fetched]);
    }
  }
  EXPECT_EQ(S_OK, enumerator->Reset());
  EXPECT_EQ(4U, Rest(*enumerator).size());
}

TEST_F(CollectionEnumTest, NextReleasesWhatItsSlotHeld) {
  Fill({L"A"});
  auto old = com::ComObject<MortalDialog>::Create();
  old->Init(L"Old");
  VARIANT slot = Around(VT_DISPATCH, nullptr);
  slot.pdispVal = old.Detach();
  EXPECT_EQ(S_OK, Enumerator()->Next(1, &slot, nullptr));
  EXPECT_EQ(Names{L"Old"}, g_gone);
  ::VariantClear(&slot);
}

TEST_F(CollectionEnumTest, SkipReportsWhetherTheEndIsReached) {
  EXPECT_EQ(S_OK, Enumerator()->Skip(5));
  Fill({L"A", L"B", L"C"});
  const common::ComPtr<IEnumVARIANT> enumerator = Enumerator();
  EXPECT_EQ(S_FALSE, enumerator->Skip(0));
  EXPECT_EQ(S_FALSE, enumerator->Skip(1));
  EXPECT_EQ(S_OK, enumerator->Skip(2));
  EXPECT_EQ(S_OK, enumerator->Skip(0));
  enumerator->Reset();
  EXPECT_EQ(S_FALSE, enumerator->Skip(2));
  EXPECT_EQ(S_OK, enumerator->Skip(ULONG_MAX));
  EXPECT_EQ(Names{}, Rest(*enumerator));
}

TEST_F(CollectionEnumTest, AClonesCursorMovesIndependently) {
  Fill({L"A", L"B", L"C"});
  const common::ComPtr<IEnumVARIANT> enumerator = Enumerator();
  enumerator->Skip(2);
  common::ComPtr<IEnumVARIANT> clone;
  ASSERT_EQ(S_OK, enumerator->Clone(clone.Put()));
  EXPECT_EQ(Names{L"C"}, Rest(*clone));
  EXPECT_EQ(Names{L"C"}, Rest(*enumerator));
  clone->Reset();
  EXPECT_EQ((Names{L"A", L"B", L"C"}), Rest(*clone));
  EXPECT_EQ(Names{}, Rest(*enumerator));
}

TEST_F(CollectionEnumTest, AnEnumeratorKeepsItsListAndLocksTheServer) {
  Fill({L"A", L"B", L"C"});
  common::ComPtr<IEnumVARIANT> enumerator = Enumerator();
  EXPECT_EQ(S_OK, m_collection->Remove(0));
  EXPECT_EQ((Names{L"A", L"B", L"C"}), Rest(*enumerator));
  enumerator = Enumerator();
  EXPECT_EQ(Names{L"A"}, g_gone);  // destroyed with the enumerator that still listed it
  EXPECT_EQ(S_OK, m_collection->RemoveAll());
  m_collection.Release();
  EXPECT_EQ((Names{L"B", L"C"}), Rest(*enumerator));
  EXPECT_EQ(3, com::DllLock::Count());  // two items and the enumerator
  enumerator.Release();
  EXPECT_EQ((Names{L"A", L"C", L"B"}), g_gone);
}

}  // namespace

}  // namespace qm::tests
