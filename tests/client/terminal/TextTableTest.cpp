#include "client/terminal/TextTable.h"

#include <gtest/gtest.h>

#include "client/terminal/Page.h"
#include "client/terminal/Style.h"
#include "client/terminal/TextWidth.h"
#include "client/terminal/WrapLines.h"

namespace mmcat {

namespace {

class TextTableTest : public testing::Test {
 protected:
  void TearDown() override {
    UsePage({});
    TakeShorteningNote();
  }

  static std::string Format(const TextTable& table) { return RemoveMarks(table.ToString(" ")); }
};

constexpr char kZip[] = "TinyZip.DC6CE4A1310E463AA8F3B6C562EFDD90:1033";
constexpr char kPen[] = "PenHolder.F6BAAFB1_0E4A_4B63_8C53_E8D5D7A1D7C2:1033";

TEST_F(TextTableTest, ColumnsWithoutLimitAreWholeAndAlignCharactersOfAnyWidth) {
  TextTable table({"Name", "Key"});
  table.AddRow({"e\u0301t\u00e9", kZip});
  table.AddRow({"\u6f22\u5b57", kPen});
  EXPECT_EQ(Format(table), std::string(" Name  Key\n e\u0301t\u00e9   ") + kZip +
                               "\n \u6f22\u5b57  " + kPen + '\n');
}

TEST_F(TextTableTest, APageLeavesOutWhatSaysNothingAndNamesWhatItHasNoRoomFor) {
  UsePage({50});
  TextTable table({"Name", "Key", "Same", "Nothing", "Path"});
  table.AddRow({"one", kZip, "yes", "", "/a/rather/long/path/of/some/file.txt"});
  table.AddRow({"two", kPen, "yes", "", "/another/rather/long/path/of/it.txt"});
  EXPECT_EQ(Format(table),
            " Same (all rows): yes\n"
            " Name  Key                  Path\n"
            " one   TinyZip.DC6CE…:1033  /a/rather/lo\u2026/file.txt\n"
            " two   PenHolder.F6B…:1033  /another/rathe\u2026/it.txt\n");
  EXPECT_EQ(TakeShorteningNote(), "(shortened; --wide gives all)\n");
  UsePage({40});
  EXPECT_EQ(Format(table),
            " Same (all rows): yes\n"
            " Name  Key\n"
            " one   TinyZip.DC6CE4A1310E463AA8F\u2026:1033\n"
            " two   PenHolder.F6BAAFB1_0E4A_4B6\u2026:1033\n");
  EXPECT_EQ(TakeShorteningNote(), "(shortened; --wide gives all, and adds Path)\n");
  EXPECT_EQ(TakeShorteningNote(), "");
}

TEST_F(TextTableTest, WhatIdentifiesARowIsWholeOrAtLeastDifferent) {
  TextTable table({"", "File", "Name", "Key"});
  table.AddRow({"1", "Runtime_90_MFC_x86.msm", "The first of two libraries", kZip});
  table.AddRow({"2", "Runtime_90_MFCLOC_x86.msm", "The second of two libraries", kPen});
  UsePage({51});
  EXPECT_EQ(Format(table),
            "    File                       Name\n"
            " 1  Runtime_90_MFC_x86.msm     The first of …raries\n"
            " 2  Runtime_90_MFCLOC_x86.msm  The second of…raries\n");
  UsePage({40});
  EXPECT_EQ(Format(table),
            " 1  Runtime_90_MFC_x86.msm\n"
            "     Name: The first of two libraries\n"
            "     Key: TinyZip.DC6CE4A1310E463A\u2026:1033\n"
            " 2  Runtime_90_MFCLOC_x86.msm\n"
            "     Name: The second of two libraries\n"
            "     Key: PenHolder.F6BAAFB1_0E4A_\u2026:1033\n");
  TextTable longNames({"File", "Size"});
  const std::string same = "A_common_beginning_of_two_file_names_that_is_very_long";
  longNames.AddRow({same + "_x86.msm", "1"});
  longNames.AddRow({same + "_more_of_it_than_one_sees_x86.msm", "2"});
  UsePage({60});
  EXPECT_NE(Format(longNames).find("sees_x86.msm"), std::string::npos);
}

TEST_F(TextTableTest, ASingleRowThatIsTooWideBecomesAList) {
  UsePage({40});
  TextTable table({"Name", "Key"});
  table.AddRow({"one", kZip});
  EXPECT_EQ(Format(table), std::string(" Name  one\n Key   ") + kZip + '\n');
}

TEST_F(TextTableTest, AColumnThatIsChosenToIdentifyTheRowsIsKeptWholeInsteadOfTheFirst) {
  UsePage({50});
  TextTable table({"File", "Module file", "Size"});
  table.IdentifyBy("Module file");
  table.AddRow({"a.very.long.name.of.a.file.manifest", "Runtime_90_MFC_x86.msm", "1"});
  table.AddRow({"another.long.name.of.a.file.manifest", "Runtime_90_MFCLOC_x86.msm", "2"});
  EXPECT_EQ(Format(table),
            " File                    Module file\n"
            " a.very.long.na\u2026anifest  Runtime_90_MFC_x86.msm\n"
            " another.long.n\u2026anifest  Runtime_90_MFCLOC_x86.msm\n");
}

TEST_F(TextTableTest, ATableThatIsKeptWholeListsTheCellsOfEachRowInsteadOfShorteningThem) {
  UsePage({40});
  TextTable table({"Name", "Key"});
  table.KeepWhole();
  table.AddRow({"one", kZip});
  table.AddRow({"two", kPen});
  EXPECT_EQ(Format(table),
            std::string(" one\n     Key: ") + kZip + "\n two\n     Key: " + kPen + '\n');
  EXPECT_EQ(TakeShorteningNote(), "");
}

TEST_F(TextTableTest, AHugeCellWithoutAPageDoesNotPadTheOtherRows) {
  TextTable table({"Name", "Value", "Size"});
  table.AddRow({"one", std::string(100000, 'x'), "1"});
  table.AddRow({"two", "y", "2"});
  EXPECT_EQ(Format(table),
            " Name  Value  Size\n one   " + std::string(100000, 'x') + "  1\n two   y      2\n");
}

TEST(TextWidthTest, LongWordsAreShortenedWhereTheirReaderMissesLeast) {
  const struct {
    const char* text;
    size_t width;
    const char* expected;
  } cases[] = {
      {kZip, 20, "TinyZip.DC6CE4\u2026:1033"},
      {kZip, 12, "TinyZip.\u2026033"},  // no room for the parts of a key
      {"TinyZip.DC6CE4A1310E463AA8F3B6C562EFDD90:1033 at least 3.0.0.0", 34,
       "TinyZip.DC6\u2026:1033 at least 3.0.0.0"},
      {"C:\\Modules\\More\\TinyZip.msm", 20, "C:\\Modu\u2026\\TinyZip.msm"},
      {"C:\\Modules\\A very long name.msm", 10, "C:\\Mod\u2026msm"},
      {"\u6f22\u5b57\u6f22\u5b57\u6f22\u5b57", 6, "\u6f22\u5b57\u2026"},
      {"fits", 4, "fits"},
  };
  for (const auto& [text, width, expected] : cases) {
    EXPECT_EQ(ShortenMiddle(text, width, "\u2026"), expected) << text << " in " << width;
  }
}

TEST(TextWidthTest, LinesBreakBetweenWordsAndContinueBelowTheirSecondColumn) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"short\n\nlines\n", "short\n\nlines\n"},
      {"one two three four five\n", "one two three four\n  five\n"},
      {"  Name    one two three\n", "  Name    one two\n          three\n"},
      {"  Path    /folder/of/some/file\n",
       "  Path    /folder/\n          of/some/\n          file\n"},
      {"\x1b[1mone two three\x1b[0m four five\n", "\x1b[1mone two three\x1b[0m four\n  five\n"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(WrapLines(text, 20), expected);
  }
}

}  // namespace

}  // namespace mmcat
