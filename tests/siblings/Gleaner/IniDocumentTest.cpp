#include "siblings/Gleaner/IniDocument.h"

#include <windows.h>
#include <gtest/gtest.h>

#include "siblings/Gleaner/IniText.h"

namespace qm::tests {

namespace {

using namespace std::literals;

/// What the parser makes of a file: "[section]" and "name=value|" for every key.
std::wstring Parsed(std::string_view bytes) {
  const siblings::IniDocument file(siblings::DecodeTextFile(bytes));
  std::wstring all;
  for (size_t s = 0; const siblings::IniDocument::Section* section = file.GetSection(s); ++s) {
    all.append(L"[").append(file.GetText(section->name)).append(L"]");
    for (size_t k = 0; const siblings::IniDocument::Key* key = file.GetKey(*section, k); ++k) {
      all.append(file.GetText(key->name))
          .append(L"=")
          .append(file.GetText(key->value))
          .append(L"|");
    }
  }
  return all;
}

struct Case {
  std::string bytes;
  std::wstring parsed;
};

void ExpectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    EXPECT_EQ(c.parsed, Parsed(c.bytes)) << testing::PrintToString(c.bytes);
  }
}

TEST(IniDocumentTest, LinesEndInAnyWayAndCommentsAreIgnored) {
  ExpectAll({
      {"", L""},
      {"\r\n \t\n", L""},
      {"[s]\r\na=1\r\nb=2\r\n", L"[s]a=1|b=2|"},
      {"[s]\na=1\nb=2", L"[s]a=1|b=2|"},
      {"[s]\ra=1\rb=2\r", L"[s]a=1|b=2|"},
      {"[s]\n\ra=1\r\r\n\nb=2\n\n", L"[s]a=1|b=2|"},
      {"[s]a=0\na=1\n[t]\n[u]\nb=2", L"[s]a=1|[t][u]b=2|"},
      {"lost\na=lost\n[s]\na=1", L"[s]a=1|"},
      {"; one\n[s];\n ;a=1\n\t;\na=1;2", L"[s]a=1;2|"},
  });
}

TEST(IniDocumentTest, BlanksAroundNamesAndValuesAreDropped) {
  ExpectAll({
      {" [ My Section ] \n\tMy Key\t = \tMy Value \t", L"[My Section]My Key=My Value|"},
      {"[s]\nname\nname=\n=value\n=\n", L"[s]name=|name=|=value|=|"},
      {"[s]\na=b=c\nd==\n", L"[s]a=b=c|d==|"},
      {"[s]\na=\" 1 \"\nb='2'", L"[s]a=\" 1 \"|b='2'|"},
      {"[s]\na=[t]\n", L"[s]a=[t]|"},
      {"[s]\nA=1\na=2\n[S]\nB=3\n[s]\nC=4", L"[s]A=1|a=2|[S]B=3|[s]C=4|"},
  });
}

TEST(IniDocumentTest, AHeaderEndsAtItsLastBracket) {
  ExpectAll({
      {"[Filters[1].msm]\na=1", L"[Filters[1].msm]a=1|"},
      {"[a]b]c]\na=1", L"[a]b]c]a=1|"},
      {"[a] left out\na=1", L"[a]a=1|"},
      {"[]\na=1", L"[]a=1|"},
      {"[s]\na=1\n[\nb=2", L"[s]a=1|[]b=2|"},
      {"[s]\na=1\n [cut off \nb=2", L"[s]a=1|[cut off]b=2|"},
  });
}

TEST(IniDocumentTest, ControlCharactersInsideNamesAndValuesAreKept) {
  ExpectAll({
      {"[s]\na\0b=c\0d\n"s, L"[s]a\0b=c\0d|"s},
      {"[s]\n\0a\0=\0c\0\n\x1A"s, L"[s]a=c|"},
      {std::string(5000, '\0'), L""},
      {"[s]\n" + std::string(5000, '\0') + "\na=1", L"[s]a=1|"},
  });
}

std::string Utf16(std::u16string_view text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(IniDocumentTest, EveryEncodingIsRecognised) {
  constexpr char16_t text[] = u"\uFEFF[\u00C4]\r\nk\u4E2D=\U0001F600\r\n";
  const std::wstring parsed = L"[\u00C4]k\u4E2D=\U0001F600|";
  ExpectAll({
      {Utf16(text, false), parsed},
      {Utf16(text, true), parsed},
      {Utf16(text, false) + "x", parsed},
      {"\xEF\xBB\xBF[\xC3\x84]\nk\xE4\xB8\xAD=\xF0\x9F\x98\x80", parsed},
      {"\xEF\xBB\xBF[s]\na=\xFF!", L"[s]a=\uFFFD!|"},
      {"[\xC4]\na=\x80", L"[\u00C4]a=\u20AC|"},  // Windows-1252
      {"[s]\na=\xEF\xBB\xBF", L"[s]a=\u00EF\u00BB\u00BF|"},
      {"\xEF\xBB\xBF", L""},
      {"\xFF\xFE", L""},
      {"\xFE\xFF[", L""},
      {"\xFF", L""},
  });
}

TEST(IniDocumentTest, LongLinesAndLargeFilesAreReadWhole) {
  const std::string text(100'000, 'x');
  const std::wstring wide(100'000, L'x');
  constexpr size_t large = 20'000'000;
  ExpectAll({
      {"[" + text + "]\n" + text + "=" + text + "\n;" + text + "\n" + text,
       L"[" + wide + L"]" + wide + L"=" + wide + L"|" + wide + L"=|"},
      {std::string(large, '\n') + "[s]\na=1", L"[s]a=1|"},
      {"[s]\n" + std::string(large, ' ') + "a=1", L"[s]a=1|"},
  });
  const siblings::IniDocument brackets(std::wstring(100'000, L'['));
  EXPECT_EQ(99'999u, brackets.GetSection(0)->name.length);

  std::string keys = "[s]\n";
  size_t count = 0;
  for (; keys.size() < large / 4; ++count) {
    keys += "a=1\n";
  }
  const siblings::IniDocument many(siblings::DecodeTextFile(keys));
  EXPECT_EQ(count, many.GetSection(0)->keyCount);
  EXPECT_EQ(many.GetKey(*many.GetSection(0), 0), many.FindKey(*many.GetSection(0), L"A"));
}

/// The position of what was found; -1 for nothing.
template <class Entry>
ptrdiff_t PositionOf(const Entry* found, const Entry* first) {
  return found ? found - first : -1;
}

TEST(IniDocumentTest, NamesAreFoundInAnyCaseAndOfDoublesTheFirst) {
  // As few names as are compared one by one, and as many as are put in order.
  for (const size_t padding : {0, 1000}) {
    SCOPED_TRACE(padding);
    std::wstring lines[2];
    for (size_t i = 0; i < padding; ++i) {
      const std::wstring name = L"Name" + std::to_wstring(padding - i);
      lines[0] += L"[" + name + L"]\n";
      lines[1] += name + L"=1\n";
    }
    const siblings::IniDocument file(
        L"[Alpha]\n[alphabet]\n[\u00C4lpha]\n[ALPHA]\n[]\n[Alp]\n" + lines[0] +
        L"[last]\nAlpha=1\nalphabet=2\n\u00C4lpha=3\nALPHA=4\n=5\nAlp=6\n" + lines[1]);
    const siblings::IniDocument::Section* const first = file.GetSection(0);
    const siblings::IniDocument::Section* const last = file.FindSection(L"LAST");
    ASSERT_EQ(static_cast<ptrdiff_t>(6 + padding), PositionOf(last, first));
    const std::pair<std::wstring_view, ptrdiff_t> cases[] = {
        {L"alpha", 0}, {L"ALPHABET", 1}, {L"\u00E4LPHA", 2},  {L"", 4},        {{}, 4},
        {L"aLP", 5},   {L"al", -1},      {L"alphabetic", -1}, {L"\u00E4", -1}, {L"alpha\0"sv, -1}};
    for (const auto& [name, position] : cases) {
      SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
      EXPECT_EQ(position, PositionOf(file.FindSection(name), first));
      EXPECT_EQ(position, PositionOf(file.FindKey(*last, name), file.GetKey(*last, 0)));
    }
    for (size_t i = 0; i < padding; ++i) {
      const std::wstring name = L"nAME" + std::to_wstring(padding - i);
      EXPECT_EQ(static_cast<ptrdiff_t>(6 + i), PositionOf(file.FindSection(name), first));
      EXPECT_EQ(static_cast<ptrdiff_t>(6 + i),
                PositionOf(file.FindKey(*last, name), file.GetKey(*last, 0)));
    }
    EXPECT_EQ(nullptr, file.FindKey(*first, L"Alpha")) << "keys of another section";
  }
}

}  // namespace

}  // namespace qm::tests
