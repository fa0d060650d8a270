#include "common/CollectionIndex.h"

#include <cstring>
#include <string>
#include <vector>

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "tests/support/Testing.h"
#include "tests/support/Variants.h"

namespace qm::tests {

namespace {

/// "3" for a position, "'x'" for a key, and "" for neither.
std::wstring IndexOf(const VARIANT& value) {
  const common::CollectionIndex index(value);
  if (index.IsKey()) {
    return L"'" + std::wstring(index.Key()) + L"'";
  }
  return index.Position() == SIZE_MAX ? L"" : std::to_wstring(index.Position());
}

TEST(CollectionIndexTest, NumbersArePositionsAndAllElseIsText) {
  const auto bits = [](double value) {
    LONGLONG pattern = 0;
    std::memcpy(&pattern, &value, sizeof pattern);
    return pattern;
  };
  constexpr int byRef = VT_BYREF, toVariant = VT_BYREF | VT_VARIANT;
  const long one = 1;
  const double fraction = 2.5;
  const common::UniqueBstr key(common::TryAllocateBstr(L"Key"));
  wchar_t* const text = key.Get();
  const VARIANT number = Around(VT_I4, 1);
  const VARIANT toNumber = Around(VT_I4 | byRef, &one);
  const VARIANT nested = Around(toVariant, &number);
  VARIANT itself = Around(toVariant, &itself);
  common::ComPtr<ICreateErrorInfo> object;
  ::CreateErrorInfo(object.Put());

  const auto expect = [](const wchar_t* expected, const std::vector<VARIANT>& indexes) {
    for (const VARIANT& index : indexes) {
      EXPECT_EQ(expected, IndexOf(index)) << "type " << index.vt << ", value " << index.llVal;
    }
  };
  // The four types of numbers that are positions, and references to them.
  expect(L"0",
         {number, toNumber, Around(VT_I2, 1), Around(VT_UI4, 1), Around(VT_UI2, 1),
          Around(VT_I2 | byRef, &one), Around(VT_UI4 | byRef, &one), Around(VT_UI2 | byRef, &one),
          nested, Around(toVariant, &nested), Around(toVariant, &toNumber)});
  expect(L"65534", {Around(VT_UI2, 0xFFFF)});
  expect(L"", {Around(VT_I4, 0LL)});
  expect(L"'Key'", {Around(VT_BSTR, text), Around(VT_BSTR | byRef, &text)});
  expect(L"''", {Around(VT_BSTR, nullptr), Around(VT_EMPTY, 0LL)});
  expect(L"'-1'", {Around(VT_BOOL, VARIANT_TRUE)});
  expect(L"'1'",
         {Around(VT_R8, bits(1.0)), Around(VT_R4, 0x3F800000), Around(VT_I1, 1), Around(VT_UI1, 1),
          Around(VT_INT, 1), Around(VT_UINT, 1), Around(VT_I8, 1), Around(VT_CY, 10'000)});
  expect(L"'2.5'", {Around(VT_R8, bits(2.5)), Around(VT_R8 | byRef, &fraction)});
  // Values that cannot be converted to text, and references to nothing.
  expect(L"", {Around(VT_NULL, 0LL), Around(VT_ERROR, 1), Around(VT_DISPATCH, nullptr),
               Around(VT_UNKNOWN, object.Get()), Around(VT_ARRAY | VT_I4, nullptr),
               Around(VT_VARIANT, nullptr), Around(0x0FFE, 1), itself, Around(toVariant, nullptr),
               Around(VT_I4 | byRef, nullptr), Around(VT_BSTR | byRef, nullptr),
               Around(VT_DISPATCH | byRef, nullptr), Around(VT_ARRAY | VT_BSTR | byRef, nullptr)});
}

}  // namespace

}  // namespace qm::tests
