#include "client/terminal/Style.h"

#include <gtest/gtest.h>

#include "client/terminal/Text.h"

namespace qm::tests {

namespace {

TEST(StyleTest, TextFromOutsideLosesItsControlCharacters) {
  EXPECT_EQ(" [31mred 31m ~ ä", mmcat::MakePrintable("\x1b[31mred\xC2\x9B"
                                                     "31m\x7F~\xC2\x85ä"));
  EXPECT_EQ("\xC2 a", mmcat::MakePrintable("\xC2\na")) << "no UTF-8";
  EXPECT_EQ("code: text",
            mmcat::RemoveMarks(mmcat::MarkHighlight("code") + ": " + mmcat::MarkHeading("text")));
  EXPECT_EQ("a", mmcat::RemoveMarks("a\x1b["));
}

}  // namespace

}  // namespace qm::tests
