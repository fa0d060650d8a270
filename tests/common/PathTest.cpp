#include "common/Path.h"

#include <tuple>

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(PathTest, JoiningPutsOneBackslashBetweenTheParts) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
      {L"C:\\a", L"b", L"C:\\a\\b"},
      {L"C:\\a\\", L"b", L"C:\\a\\b"},
      {L"C:\\a", L"\\b", L"C:\\a\\b"},
      {L"C:\\a\\", L"\\b", L"C:\\a\\b"},
      {L"", L"b", L"b"},
      {L"", L"\\b", L"\\b"},
      {L"C:\\", L"b\\c", L"C:\\b\\c"},
      {L"", L"", L""}};
  for (const auto& [base, tail, joined] : cases) {
    EXPECT_EQ(common::JoinPath(base, tail), joined);
  }
  EXPECT_EQ(common::ParentFolder(L"C:\\a\\b.msm"), L"C:\\a");
  EXPECT_EQ(common::ParentFolder(L"b.msm"), L"");
}

}  // namespace

}  // namespace qm::tests
