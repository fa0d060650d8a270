#include "msidb/Record.h"

#include "tests/support/InstallerFixture.h"

namespace qm::tests {

namespace {

using RecordTest = InstallerFixture;

TEST_F(RecordTest, FieldsHoldTextsOfAnyLengthAndNumbers) {
  msidb::Record record = msidb::Record::Create(2);
  for (const size_t length : {0U, 1U, 2047U, 2048U, 100'000U}) {
    const common::WideString text(std::wstring(length, L'\u4e2d'));
    record.SetString(1, text);
    installer::Reset();
    EXPECT_EQ(record.GetString(1), text);
    EXPECT_EQ(length < 2048 ? 1 : 2, CallCount("MsiRecordGetStringW")) << length;
  }
  installer::Answer("MsiRecordGetStringW", ERROR_INVALID_PARAMETER, 1);  // at the second call
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER),
            FailureOf([&] { record.GetString(1); }).hr);
  record.SetInteger(2, -7);
  EXPECT_EQ(-7, record.GetInteger(2));
  EXPECT_FALSE(record.IsNull(2));
  record.Clear();
  EXPECT_TRUE(record.IsNull(2));
  EXPECT_EQ(INT_MIN, record.GetInteger(2));
  EXPECT_EQ(0, msidb::Record().GetInteger(1));
}

}  // namespace

}  // namespace qm::tests
