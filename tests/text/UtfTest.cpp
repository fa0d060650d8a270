#include "text/Utf.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#ifdef _WIN32
#include <windows.h>
#endif

namespace qm::tests {

namespace {

using namespace std::string_view_literals;

TEST(UtfTest, ConvertingBackAndForthKeepsTheText) {
  const struct {
    std::string_view utf8;
    std::u16string_view utf16;
  } cases[] = {
      {"", u""},
      {"Pens:1033", u"Pens:1033"},
      {"a\0b"sv, u"a\0b"sv},
      // The first and the last character of each length.
      {"\x7F\xC2\x80", u"\x7F\x80"},
      {"\xDF\xBF\xE0\xA0\x80", u"\u07FF\u0800"},
      {"\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
      {"\xEF\xBF\xBF\xF0\x90\x80\x80", u"\uFFFF\U00010000"},
      {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
  };
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(text::ToUtf16(utf8), utf16);
    EXPECT_EQ(text::ToUtf8(utf16), utf8);
  }
}

TEST(UtfTest, EachIllFormedPartOfUtf8IsReplacedOnce) {
  const struct {
    std::string_view utf8;
    std::u16string_view utf16;
  } cases[] = {
      {"\x80", u"\uFFFD"},                                // a follower alone
      {"\xC0\x80", u"\uFFFD\uFFFD"},                      // overlong
      {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above the last character
      {"\xF5\xFF", u"\uFFFD\uFFFD"},                      // no lead bytes
      {"\xC3"
       "A",
       u"\uFFFDA"},
      {"\xE4\xB8"
       "A",
       u"\uFFFDA"},
      {"\xF0\x9F\x96\xC3\xA9", u"\uFFFD\u00E9"},
      {"\xF0\x9F\x96", u"\uFFFD"},  // the end inside a character
      {"\xE4", u"\uFFFD"},
  };
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(text::ToUtf16(utf8), utf16) << testing::PrintToString(utf8);
  }
}

TEST(UtfTest, ASurrogateWithoutItsPartnerIsReplaced) {
  const struct {
    std::u16string utf16;
    std::string_view utf8;
  } cases[] = {
      {{0xD83D}, "\xEF\xBF\xBD"},
      {{0xDD8A, u'x'}, "\xEF\xBF\xBDx"},
      {{0xD83D, u'x'}, "\xEF\xBF\xBDx"},
      {{0xD83D, 0xD83D, 0xDD8A}, "\xEF\xBF\xBD\xF0\x9F\x96\x8A"},
  };
  for (const auto& [utf16, utf8] : cases) {
    EXPECT_EQ(text::ToUtf8(utf16), utf8);
  }
}

#ifdef _WIN32
/// Every text of four of these bytes: they begin and continue characters of each length, and lie on
/// either side of each bound that a second byte has. How many U+FFFD stand for an ill-formed text
/// is not compared: Wine drops the end of a text that stops inside a character.
TEST(UtfTest, RefusesAndConvertsUtf8AsThePlatformDoes) {
  const std::string_view bytes =
      "A\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xE0\xE1\xED\xEE\xF0\xF1\xF4\xF5";
  const size_t count = bytes.size();
  for (size_t i = 0; i < count * count * count * count; ++i) {
    const std::string text = {bytes[i % count], bytes[i / count % count],
                              bytes[i / count / count % count], bytes[i / count / count / count]};
    wchar_t expected[4] = {};
    const int length =
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), 4, expected, 4);
    const std::wstring wide = text::ToWide(text);
    if (length == 0) {
      ASSERT_NE(wide.find(L'\uFFFD'), std::wstring::npos) << testing::PrintToString(text);
    } else {
      ASSERT_EQ(wide, std::wstring(expected, static_cast<size_t>(length)));
    }
  }
}
#endif

}  // namespace

}  // namespace qm::tests
