#include "gallery/CompareVersions.h"

#include <gtest/gtest.h>

namespace qm::tests {

namespace {

TEST(CompareVersionsTest, VersionsCompareByFourNumbersOfSixteenBits) {
  struct Case {
    const wchar_t* a;
    const wchar_t* b;
    int result;
  } const cases[] = {
      {L"1.2", L"1.2.0.0", 0},       {L"2.0", L"1.9.9.9", 1},    {L"1.10", L"1.9", 1},
      {L"0.2", L"0.1.9", 1},         {L"0.0.2", L"0.0.1.9", 1},  {L"0.0.0.1", L"", 1},
      {L"1.0.1", L"1.0.0.65535", 1}, {L"40000", L"30000", 1},    {L"0.0.40000", L"0.0.30000", 1},
      {L"65536", L"0", 0},           {L"1.65537", L"1.1", 0},    {L"1.2.3.5", L"1.2.3.4.9", 1},
      {L"1.2.3.4.5", L"1.2.3.4", 0}, {L"", L"0.0", 0},           {L"beta", L"", 0},
      {L"1.x.3", L"1.0.3", 0},       {L"1.2rc9.3", L"1.2.3", 0}, {L"1..2", L"1.0.2", 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.result, gallery::CompareVersions(c.a, c.b)) << c.a << " against " << c.b;
    EXPECT_EQ(-c.result, gallery::CompareVersions(c.b, c.a)) << c.b << " against " << c.a;
  }
}

}  // namespace

}  // namespace qm::tests
