#include <functional>

#include "common/ModuleKey.h"
#include "common/Path.h"
#include "tests/support/Testing.h"

namespace {

TEST(WideStringTest, EveryWayToMakeTextKeepsTheLastErrorCode) {
  const std::wstring text(1000, L'x');  // far too long for a buffer inside the string
  const CWideString other(text);
  const std::pair<const char*, std::function<CWideString()>> ways[] = {
      {"pointer", [&] { return CWideString(text.c_str()); }},
      {"pointer and length", [&] { return CWideString(text.c_str(), text.size()); }},
      {"view", [&] { return CWideString(std::wstring_view(text)); }},
      {"copy", [&] { return CWideString(other); }},
      {"assignment", [&] { return std::move(CWideString() = other); }},
      {"appending", [&] { return std::move(CWideString() += text); }},
      {"joining", [&] { return L"head" + other + text; }},
      {"formatting", [&] { return CWideString::Format(L"%s", text.c_str()); }},
      {"path", [&] { return JoinPath(other, text); }},
      {"module key", [&] { return MakeModuleKey(other, 1033); }},
  };
  for (const auto& [how, make] : ways) {
    ::SetLastError(ERROR_SHARING_VIOLATION);
    const CWideString made = make();
    EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, ::GetLastError()) << how;
    EXPECT_LE(text.size(), made.length()) << how;
  }

  ::SetLastError(ERROR_SHARING_VIOLATION);
  const std::wstring plain(text);
  EXPECT_EQ(heap::kLastError, ::GetLastError()) << "the allocator left the code alone: no test";
}

TEST(WideStringTest, TextsOfAnyLengthAreFormatted) {
  const std::wstring longText(5000, L'\u00e9');
  EXPECT_EQ(CWideString::Format(L"%s:%d", L"Id.\u4e2d", -7), L"Id.\u4e2d:-7");
  EXPECT_EQ(CWideString::Format(L"%d", INT_MIN), L"-2147483648");
  EXPECT_EQ(CWideString::Format(L"%s", longText.c_str()), longText);
  EXPECT_EQ(CWideString::Format(L"%s%s", L"", L""), L"");
}

}  // namespace
