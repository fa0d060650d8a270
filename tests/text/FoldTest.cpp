#include "text/Fold.h"

#include <gtest/gtest.h>

#include <string_view>

#ifdef _WIN32
#include <windows.h>
#endif

namespace qm::tests {

namespace {

using namespace std::string_view_literals;

TEST(FoldTest, TextsThatDifferInCaseAloneAreEqual) {
  const struct {
    std::string_view text;
    std::string_view folded;
  } cases[] = {
      {"", ""},
      {"@AZ[`az{", "@az[`az{"},
      {"A\0Z"sv, "a\0z"sv},
      {"\u00C9T\u00C9", "\u00E9t\u00E9"},
      {"\u0141\u0142", "\u0142\u0142"},  // capitals and small letters in turn
      {"\u03A3\u03C2", "\u03C3\u03C2"},  // the final sigma is a letter of its own
      {"\u0410\u042F", "\u0430\u044F"},
      {"\u0130\u01C5\u1E9E", "\u0130\u01C5\u1E9E"},  // no small letter of one unit, or title case
      {"\uFF21\uFFFF", "\uFF41\uFFFF"},
      {"A\U00010400", "a\U00010400"},
      {"A\xE4", "a\uFFFD"},
  };
  for (const auto& [text, folded] : cases) {
    EXPECT_EQ(text::FoldCase(text), folded);
    EXPECT_EQ(text::FoldCase(folded), folded);
  }
}

TEST(FoldTest, SurrogatesStayAsTheyAre) {
  const std::u16string text = {u'A', 0xD801, 0xDC00, 0xDFFF};
  EXPECT_EQ(text::FoldCase(text), (std::u16string{u'a', 0xD801, 0xDC00, 0xDFFF}));
}

TEST(FoldTest, OrderIgnoresCaseAlone) {
  EXPECT_EQ(text::CompareFolded(u"\u00C9t\u0141 A", u"\u00E9T\u0142 a"), 0);
  EXPECT_LT(text::CompareFolded(u"_Z", u"a"), 0);  // capitals would come before the line
  for (const std::u16string_view greater : {u"ab", u"\u00E9"}) {
    EXPECT_LT(text::CompareFolded(u"A", greater), 0);
    EXPECT_GT(text::CompareFolded(greater, u"A"), 0);
  }
}

#ifdef _WIN32
TEST(FoldTest, FoldsEveryUnitAsThePlatformDoes) {
  for (WORD unit = 0;; ++unit) {
    const auto lower = reinterpret_cast<ULONG_PTR>(::CharLowerW(MAKEINTRESOURCEW(unit)));
    ASSERT_EQ(text::FoldCase(static_cast<char16_t>(unit)), lower) << std::hex << unit;
    if (unit == 0xFFFF) {
      break;
    }
  }
}
#endif

}  // namespace

}  // namespace qm::tests
