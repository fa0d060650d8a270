#include <cstring>
#include <string>
#include <vector>

#include "module/Collections.h"
#include "module/MMDialog.h"
#include "tests/support/Testing.h"

namespace {

using Names = std::vector<std::wstring>;

/// Names of the items that were destroyed, in their order.
Names g_gone;

/// A dialog that says when it goes.
class CMortalDialog : public CMMDialog {
 public:
  CMortalDialog() = default;
  CMortalDialog(const CMortalDialog&) = delete;
  CMortalDialog& operator=(const CMortalDialog&) = delete;
  ~CMortalDialog() { g_gone.emplace_back(std::wstring_view(CollectionKey())); }
};

std::wstring NameOf(IMMDialog& item) {
  CUniqueBstr name;
  item.get_Name(name.Put());
  return std::wstring(ViewOf(name.Get()));
}

/// The names from an enumerator's cursor to the end.
Names Rest(IEnumVARIANT& enumerator) {
  Names names;
  VARIANT value{};
  while (enumerator.Next(1, &value, nullptr) == S_OK) {
    EXPECT_EQ(VT_DISPATCH, value.vt);
    CComPtr<IMMDialog> item;
    EXPECT_EQ(S_OK, value.pdispVal->QueryInterface(item.Put()));
    names.push_back(NameOf(*item));
    ::VariantClear(&value);
  }
  return names;
}

/// A VARIANT of any type, by its bits.
VARIANT V(int type, LONGLONG value) {
  VARIANT variant{};
  variant.vt = static_cast<VARTYPE>(type);
  variant.llVal = value;
  return variant;
}

class Collection : public ::testing::Test {
 protected:
  void SetUp() override {
    g_gone.clear();
    g_gone.reserve(16);  // an item that goes allocates nothing
  }
  void TearDown() override {
    m_collection.Release();
    EXPECT_EQ(0, ModuleLock::Count()) << "objects are left";
  }

  /// Adds an item of every name under that name.
  void Fill(const Names& names) {
    for (const std::wstring& name : names) {
      const auto item = CComObject<CMortalDialog>::Create();
      item->Init(std::wstring_view(name));
      m_collection->Add(item->CollectionKey(), item.Get());
    }
  }

  long Count() {
    long count = -1;
    EXPECT_EQ(S_OK, m_collection->get_Count(&count));
    return count;
  }

  /// The name of the item at an index; "nothing" when there is none.
  std::wstring At(const VARIANT& index) {
    auto* item = reinterpret_cast<IMMDialog*>(this);
    const HRESULT hr = m_collection->get_Item(index, &item);
    EXPECT_EQ(item ? S_OK : E_INVALIDARG, hr);
    return item ? NameOf(*CComPtr<IMMDialog>::Adopt(item)) : L"nothing";
  }
  std::wstring At(long number) { return At(V(VT_I4, number)); }
  std::wstring At(const wchar_t* key) {
    const CUniqueBstr text(AllocBstr(key));
    return At(V(VT_BSTR, reinterpret_cast<INT_PTR>(text.Get())));
  }

  CComPtr<IEnumVARIANT> Enumerator() {
    CComPtr<IEnumVARIANT> enumerator;
    EXPECT_EQ(S_OK, m_collection->get_Enumerator(enumerator.Put()));
    return enumerator;
  }

  CComPtr<CComObject<CMMDialogs>> m_collection = CComObject<CMMDialogs>::Create();
};

TEST_F(Collection, ItemByEveryTypeOfIndex) {
  Fill({L"Alpha", L"1", L"-1", L"", L"2.5"});
  const auto bits = [](double value) {
    LONGLONG pattern = 0;
    std::memcpy(&pattern, &value, sizeof pattern);
    return pattern;
  };
  const auto address = [](const void* target) { return reinterpret_cast<INT_PTR>(target); };
  constexpr int byRef = VT_BYREF, toVariant = VT_BYREF | VT_VARIANT;
  long one = 1;
  double fraction = 2.5;
  const CUniqueBstr key(AllocBstr(L"aLPHA"));
  BSTR text = key.Get();
  const VARIANT number = V(VT_I4, 1);
  const VARIANT toNumber = V(VT_I4 | byRef, address(&one));
  const VARIANT nested = V(toVariant, address(&number));
  VARIANT itself = V(toVariant, address(&itself));
  const CComPtr<IDispatch> object(CComObject<CMMDialog>::Create().Get());

  const auto expect = [this](const wchar_t* item, const std::vector<VARIANT>& indexes) {
    for (const VARIANT& index : indexes) {
      EXPECT_EQ(item, At(index)) << "type " << index.vt << ", value " << index.llVal;
    }
  };
  // Numbers: the four types that are indexes, and references to them.
  expect(L"Alpha", {number, toNumber, V(VT_I2, 1), V(VT_UI4, 1), V(VT_UI2, 1),
                    V(VT_I2 | byRef, address(&one)), V(VT_UI4 | byRef, address(&one)),
                    V(VT_UI2 | byRef, address(&one)), V(toVariant, address(&number)),
                    V(toVariant, address(&nested)), V(toVariant, address(&toNumber))});
  expect(L"2.5", {V(VT_I4, 5)});
  expect(L"nothing", {V(VT_I4, 0), V(VT_I4, 6), V(VT_I4, -1), V(VT_I4, LONG_MIN), V(VT_I2, -1),
                      V(VT_UI4, 0xFFFFFFFF)});
  // Everything else is a key.
  expect(L"Alpha", {V(VT_BSTR, address(text)), V(VT_BSTR | byRef, address(&text))});
  expect(L"", {V(VT_BSTR, 0), V(VT_EMPTY, 0)});
  expect(L"-1", {V(VT_BOOL, VARIANT_TRUE)});
  expect(L"1", {V(VT_R8, bits(1.0)), V(VT_R4, 0x3F800000), V(VT_I1, 1), V(VT_UI1, 1), V(VT_INT, 1),
                V(VT_UINT, 1), V(VT_I8, 1), V(VT_CY, 10'000)});
  expect(L"2.5", {V(VT_R8, bits(2.5)), V(VT_R8 | byRef, address(&fraction))});
  // What has no text, and references that lead nowhere.
  expect(L"nothing",
         {V(VT_R8, bits(2.0)), V(VT_NULL, 0), V(VT_ERROR, 1), V(VT_DISPATCH, 0), V(VT_UNKNOWN, 0),
          V(VT_DISPATCH, address(object.Get())), V(VT_ARRAY | VT_I4, 0), V(VT_VARIANT, 0),
          V(0x0FFE, 1), itself, V(toVariant, 0), V(VT_I4 | byRef, 0), V(VT_BSTR | byRef, 0),
          V(VT_DISPATCH | byRef, 0), V(VT_ARRAY | VT_BSTR | byRef, 0)});
}

TEST_F(Collection, NullPointersAreRefused) {
  Fill({L"A"});
  EXPECT_EQ(E_POINTER, m_collection->get_Item(V(VT_I4, 1), nullptr));
  EXPECT_EQ(E_POINTER, m_collection->get_Count(nullptr));
  EXPECT_EQ(E_POINTER, m_collection->get__NewEnum(nullptr));
  EXPECT_EQ(E_POINTER, m_collection->get_Enumerator(nullptr));
  const CComPtr<IEnumVARIANT> enumerator = Enumerator();
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

TEST_F(Collection, DoubledKeysAreListedAndTheFirstIsFound) {
  Fill({L"b", L"key", L"a", L"KEY"});
  EXPECT_EQ(L"key", At(L"KEY"));
  EXPECT_EQ(L"KEY", At(4));
  EXPECT_EQ(S_OK, m_collection->Remove(1));
  EXPECT_EQ(L"KEY", At(L"key"));
  EXPECT_EQ((Names{L"b", L"a", L"KEY"}), Rest(*Enumerator()));
}

TEST_F(Collection, RemovedItemsGoFromLastToFirstUnlessSomebodyHoldsThem) {
  Fill({L"A", L"B", L"C", L"D"});
  EXPECT_EQ(E_INVALIDARG, m_collection->Remove(4));
  EXPECT_EQ(S_OK, m_collection->Remove(1));
  EXPECT_EQ(Names{L"B"}, g_gone);
  EXPECT_EQ(L"C", At(2));
  EXPECT_EQ(L"A", At(L"a"));
  EXPECT_EQ(L"D", At(L"d"));
  EXPECT_EQ(L"nothing", At(L"B"));
  CComPtr<IMMDialog> held;
  ASSERT_EQ(S_OK, m_collection->get_Item(V(VT_I4, 2), held.Put()));
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

TEST_F(Collection, RemoveStandsBehindTheInterfaceMethods) {
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

TEST_F(Collection, OutOfMemoryChangesNothing) {
  Fill({L"A", L"B"});
  CComPtr<IUnknown> enumerator;
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

using Enumeration = Collection;

TEST_F(Enumeration, NextGivesUpToAsManyAsAreThere) {
  Fill({L"A", L"B", L"C", L"D"});
  const CComPtr<IEnumVARIANT> enumerator = Enumerator();
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

TEST_F(Enumeration, NextReleasesWhatItsSlotHeld) {
  Fill({L"A"});
  auto old = CComObject<CMortalDialog>::Create();
  old->Init(L"Old");
  VARIANT slot = V(VT_DISPATCH, 0);
  slot.pdispVal = old.Detach();
  EXPECT_EQ(S_OK, Enumerator()->Next(1, &slot, nullptr));
  EXPECT_EQ(Names{L"Old"}, g_gone);
  ::VariantClear(&slot);
}

TEST_F(Enumeration, SkipSaysWhetherItStandsAtTheEnd) {
  EXPECT_EQ(S_OK, Enumerator()->Skip(5));
  Fill({L"A", L"B", L"C"});
  const CComPtr<IEnumVARIANT> enumerator = Enumerator();
  EXPECT_EQ(S_FALSE, enumerator->Skip(0));
  EXPECT_EQ(S_FALSE, enumerator->Skip(1));
  EXPECT_EQ(S_OK, enumerator->Skip(2));
  EXPECT_EQ(S_OK, enumerator->Skip(0));
  enumerator->Reset();
  EXPECT_EQ(S_FALSE, enumerator->Skip(2));
  EXPECT_EQ(S_OK, enumerator->Skip(ULONG_MAX));
  EXPECT_EQ(Names{}, Rest(*enumerator));
}

TEST_F(Enumeration, ClonesGoTheirOwnWay) {
  Fill({L"A", L"B", L"C"});
  const CComPtr<IEnumVARIANT> enumerator = Enumerator();
  enumerator->Skip(2);
  CComPtr<IEnumVARIANT> clone;
  ASSERT_EQ(S_OK, enumerator->Clone(clone.Put()));
  EXPECT_EQ(Names{L"C"}, Rest(*clone));
  EXPECT_EQ(Names{L"C"}, Rest(*enumerator));
  clone->Reset();
  EXPECT_EQ((Names{L"A", L"B", L"C"}), Rest(*clone));
  EXPECT_EQ(Names{}, Rest(*enumerator));
}

TEST_F(Enumeration, KeepsItsListAndLocksTheModule) {
  Fill({L"A", L"B", L"C"});
  CComPtr<IEnumVARIANT> enumerator = Enumerator();
  EXPECT_EQ(S_OK, m_collection->Remove(0));
  EXPECT_EQ((Names{L"A", L"B", L"C"}), Rest(*enumerator));
  enumerator = Enumerator();
  EXPECT_EQ(Names{L"A"}, g_gone);  // went with the enumerator that still listed it
  EXPECT_EQ(S_OK, m_collection->RemoveAll());
  m_collection.Release();
  EXPECT_EQ((Names{L"B", L"C"}), Rest(*enumerator));
  EXPECT_EQ(3, ModuleLock::Count());  // two items and the enumerator
  enumerator.Release();
  EXPECT_EQ((Names{L"A", L"C", L"B"}), g_gone);
}

}  // namespace
