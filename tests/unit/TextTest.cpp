#include <windows.h>

#include <string>
#include <string_view>

#include "tests/support/Testing.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace {

TEST(Text, FoldsEveryUnitAsThePlatformDoes) {
  for (WORD unit = 0;; ++unit) {
    const auto lower = reinterpret_cast<ULONG_PTR>(::CharLowerW(MAKEINTRESOURCEW(unit)));
    ASSERT_EQ(qm::text::FoldCase(static_cast<char16_t>(unit)), lower) << std::hex << unit;
    if (unit == 0xFFFF) {
      break;
    }
  }
}

/// Every text of four of these bytes: they begin and continue characters of each length, and lie on
/// either side of each bound that a second byte has. How many U+FFFD stand for an ill-formed text
/// is not compared: Wine drops the end of a text that stops inside a character.
TEST(Text, RefusesAndConvertsUtf8AsThePlatformDoes) {
  const std::string_view bytes =
      "A\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xE0\xE1\xED\xEE\xF0\xF1\xF4\xF5";
  const size_t count = bytes.size();
  for (size_t i = 0; i < count * count * count * count; ++i) {
    const std::string text = {bytes[i % count], bytes[i / count % count],
                              bytes[i / count / count % count], bytes[i / count / count / count]};
    wchar_t expected[4] = {};
    const int length =
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), 4, expected, 4);
    const std::wstring wide = qm::text::ToWide(text);
    if (length == 0) {
      ASSERT_NE(wide.find(L'\uFFFD'), std::wstring::npos) << testing::PrintToString(text);
    } else {
      ASSERT_EQ(wide, std::wstring(expected, static_cast<size_t>(length)));
    }
  }
}

}  // namespace
