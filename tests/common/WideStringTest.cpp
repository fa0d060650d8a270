#include <functional>

#include "common/ModuleKey.h"
#include "common/Path.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(WideStringTest, EveryWayToMakeTextKeepsTheLastErrorCode) {
  const std::wstring text(1000, L'x');  // far too long for a buffer inside the string
  const common::WideString other(text);
  const std::pair<const char*, std::function<common::WideString()>> ways[] = {
      {"pointer", [&] { return common::WideString(text.c_str()); }},
      {"pointer and length", [&] { return common::WideString(text.c_str(), text.size()); }},
      {"view", [&] { return common::WideString(std::wstring_view(text)); }},
      {"copy", [&] { return common::WideString(other); }},
      {"assignment", [&] { return std::move(common::WideString() = other); }},
      {"appending", [&] { return std::move(common::WideString() += text); }},
      {"joining", [&] { return L"head" + other + text; }},
      {"formatting", [&] { return common::WideString::Format(L"%s", text.c_str()); }},
      {"path", [&] { return common::JoinPath(other, text); }},
      {"module key", [&] { return common::MakeModuleKey(other, 1033); }},
  };
  for (const auto& [how, make] : ways) {
    ::SetLastError(ERROR_SHARING_VIOLATION);
    const common::WideString made = make();
    EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, ::GetLastError()) << how;
    EXPECT_LE(text.size(), made.length()) << how;
  }

  ::SetLastError(ERROR_SHARING_VIOLATION);
  const std::wstring plain(text);
  EXPECT_EQ(heap::kLastError, ::GetLastError()) << "the allocator left the code alone: no test";
}

TEST(WideStringTest, TextsOfAnyLengthAreFormatted) {
  const std::wstring longText(5000, L'\u00e9');
  EXPECT_EQ(common::WideString::Format(L"%s:%d", L"Id.\u4e2d", -7), L"Id.\u4e2d:-7");
  EXPECT_EQ(common::WideString::Format(L"%d", INT_MIN), L"-2147483648");
  EXPECT_EQ(common::WideString::Format(L"%s", longText.c_str()), longText);
  EXPECT_EQ(common::WideString::Format(L"%s%s", L"", L""), L"");
}

}  // namespace

}  // namespace qm::tests
