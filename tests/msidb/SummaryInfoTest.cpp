#include "msidb/SummaryInfo.h"

#include "tests/support/InstallerFixture.h"
// Needs the installer's headers first.
#include <msidefs.h>

namespace qm::tests {

namespace {

using SummaryInfoTest = InstallerFixture;

TEST_F(SummaryInfoTest, TextPropertiesOfAnyLengthAreRead) {
  const std::pair<UINT, size_t> texts[] = {{PID_TITLE, 1},
                                           {PID_SUBJECT, 259},
                                           {PID_AUTHOR, 260},
                                           {PID_KEYWORDS, 261},
                                           {PID_COMMENTS, 10'000}};
  TestDatabase test;
  {
    msidb::MsiHandle handle;
    ASSERT_EQ(0U, ::MsiGetSummaryInformationW(test.database.Get(), nullptr, 10, handle.Put()));
    auto* const set =
        installer::Find<decltype(::MsiSummaryInfoSetPropertyW)>("MsiSummaryInfoSetPropertyW");
    for (const auto& [property, length] : texts) {
      const std::wstring text(length, L'x');
      ASSERT_EQ(0U, set(handle.Get(), property, VT_LPSTR, 0, nullptr, text.c_str()));
    }
    ASSERT_EQ(0U, set(handle.Get(), PID_PAGECOUNT, VT_I4, 200, nullptr, nullptr));
    installer::Find<decltype(::MsiSummaryInfoPersist)>("MsiSummaryInfoPersist")(handle.Get());
    test.CommitAndClose();
  }
  const msidb::SummaryInfo summary(test.path.c_str());
  const auto text = [&](UINT property) {
    return msidb::ReadSummaryString(summary.Get(), property);
  };
  for (const auto& [property, length] : texts) {
    EXPECT_EQ(text(property), std::wstring(length, L'x')) << length;
  }
  EXPECT_EQ(text(PID_PAGECOUNT), L"");  // a number
  EXPECT_EQ(text(PID_TEMPLATE), L"");   // missing
  installer::Answer("MsiSummaryInfoGetPropertyW", ERROR_INVALID_HANDLE);
  EXPECT_EQ(text(PID_TITLE), L"x") << "a property of type text counts, whatever the code";
  installer::Reset();
  installer::Answer("MsiSummaryInfoGetPropertyW", ERROR_FUNCTION_FAILED, 1);  // at the second call
  EXPECT_EQ(text(PID_KEYWORDS), std::wstring(261, L'x'));
}

}  // namespace

}  // namespace qm::tests
