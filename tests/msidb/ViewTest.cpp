#include "msidb/View.h"

#include "msidb/InstallerResult.h"
#include "tests/support/InstallerFixture.h"
// Needs the installer's headers first.
#include <msidefs.h>

namespace qm::tests {

namespace {

using ViewTest = InstallerFixture;

TEST_F(ViewTest, FetchingStaysAtTheEnd) {
  Bench bench;
  msidb::View& view = bench.view;
  EXPECT_FALSE(msidb::View().Next());  // without a query there are no rows
  for (const wchar_t* key : {L"A", L"B", L"C"}) {
    ASSERT_TRUE(view.Next());
    EXPECT_EQ(view.Row().GetString(1), key);
  }
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(view.Next());
    EXPECT_FALSE(view.Row());
  }
  EXPECT_EQ(HRESULT_FROM_WIN32(259), FailureOf([&] { view.NextOrRaise(); }).hr);

  bench.record.SetString(1, L"B");
  view.Open(bench.database, L"SELECT `N` FROM `T` WHERE `K` = ?");
  view.Execute(&bench.record);
  view.NextOrRaise();
  EXPECT_EQ(2, view.Row().GetInteger(1));
  EXPECT_FALSE(view.OpenAndFetch(bench.database, L"SELECT `N` FROM `T` WHERE `K` = 'X'"));
}

TEST_F(ViewTest, ModifyHasACodeOfItsOwnForDuplicateKeys) {
  const std::pair<int, HRESULT> details[] = {
      {MSIDBERROR_DUPLICATEKEY, static_cast<HRESULT>(0x800403E8)},
      {MSIDBERROR_REQUIRED, HRESULT_FROM_WIN32(13)}};
  for (const auto& [detail, hr] : details) {
    Bench bench;
    installer::Answer("MsiViewModify", ERROR_INVALID_DATA);
    installer::Answer("MsiViewGetErrorW", static_cast<UINT>(detail));
    const auto modify = [&] { bench.view.Modify(MSIMODIFY_INSERT, bench.record); };
    EXPECT_EQ(hr, FailureOf(modify).hr);
    EXPECT_EQ(FailureOf(modify).description,
              SystemText(HRESULT_FROM_WIN32(13)) + L"MsiViewModify()");
    installer::Reset();

    bench.record.SetString(1, L"D");
    modify();
    const HRESULT real = FailureOf(modify).hr;
    // Some installers do not report what is wrong with the row.
    EXPECT_TRUE(real == msidb::kDuplicatePrimaryKey || real == HRESULT_FROM_WIN32(1627)) << real;
    int rows = 0;
    for (bench.view.OpenTable(bench.database, L"T"); bench.view.Next(); ++rows) {
    }
    EXPECT_EQ(4, rows);
  }
}

}  // namespace

}  // namespace qm::tests
