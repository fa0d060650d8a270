#include "client/terminal/Text.h"

#include <gtest/gtest.h>

#include "client/terminal/Csv.h"

namespace mmcat {

namespace {

TEST(TextTest, ListsNameTheirFirstItemsAndCountTheRestUnlessItIsOne) {
  const std::vector<std::string> items{"A", "B", "C", "D"};
  const struct {
    std::ptrdiff_t count;
    const char* some;
    const char* alternatives;
  } cases[] = {
      {0, "", ""},
      {1, "A", "A"},
      {2, "A, B", "A or B"},
      {3, "A, B, C", "A, B or C"},
      {4, "A, B and 2 more", "A, B or 2 others"},
  };
  for (const auto& [count, some, alternatives] : cases) {
    const std::vector<std::string> first(items.begin(), items.begin() + count);
    EXPECT_EQ(JoinSome(first, 2), some);
    EXPECT_EQ(JoinAlternatives(first, 2), alternatives);
  }
}

TEST(TextTest, LineBreaksInCellsOfCsvAreThoseOfItsRows) {
  const Json rows = {{{"a", "one\r\ntwo\nthree"}, {"b", "\"x\""}}};
  EXPECT_EQ(FormatCsv({"a", "b"}, rows), "a,b\n\"one\ntwo\nthree\",\"\"\"x\"\"\"\n");
}

}  // namespace

}  // namespace mmcat
