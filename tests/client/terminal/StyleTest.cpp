#include "client/terminal/Style.h"

#include <gtest/gtest.h>

#include "client/terminal/TextTable.h"

namespace {

TEST(StyleTest, TextFromOutsideLosesItsControlCharacters) {
  EXPECT_EQ(" [31mred 31m ~ ä", Printable("\x1b[31mred\xC2\x9B"
                                          "31m\x7F~\xC2\x85ä"));
  EXPECT_EQ("code: text", WithoutMarks(Highlighted("code") + ": " + Heading("text")));
  EXPECT_EQ("a", WithoutMarks("a\x1b["));
}

}  // namespace
