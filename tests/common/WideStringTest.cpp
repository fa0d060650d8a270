#include <functional>
#include <tuple>
#include <vector>

#include "common/ModuleKey.h"
#include "common/Path.h"
#include "common/UniqueHandle.h"
#include "tests/support/Testing.h"

namespace {

TEST(WideString, EveryWayToMakeTextKeepsTheLastErrorCode) {
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

TEST(WideString, HoldsAnyText) {
  EXPECT_TRUE(CWideString(static_cast<const wchar_t*>(nullptr)).empty());
  EXPECT_EQ(CWideString(L"a\0b", 3) + std::wstring_view(L"\0c", 2),
            std::wstring_view(L"a\0b\0c", 5));
  EXPECT_FALSE(CWideString(L"a") == L"A");
  EXPECT_LT(CWideString(L"Z"), CWideString(L"a"));
}

TEST(WideString, Format) {
  const std::wstring longText(5000, L'\u00e9');
  EXPECT_EQ(CWideString::Format(L"%s:%d", L"Id.\u4e2d", -7), L"Id.\u4e2d:-7");
  EXPECT_EQ(CWideString::Format(L"%d", INT_MIN), L"-2147483648");
  EXPECT_EQ(CWideString::Format(L"%s", longText.c_str()), longText);
  EXPECT_EQ(CWideString::Format(L"%s%s", L"", L""), L"");
  EXPECT_EQ(MakeModuleKey(L"Ink.0123", 0), L"Ink.0123:0");
  EXPECT_EQ(MakeModuleKey(L"", -1), L":-1");
}

TEST(Path, Join) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
      {L"C:\\a", L"b", L"C:\\a\\b"},
      {L"C:\\a\\", L"b", L"C:\\a\\b"},
      {L"C:\\a", L"\\b", L"C:\\a\\b"},
      {L"C:\\a\\", L"\\b", L"C:\\a\\b"},
      {L"", L"b", L"b"},
      {L"", L"\\b", L"\\b"},
      {L"C:\\", L"b\\c", L"C:\\b\\c"},
      {L"", L"", L""}};
  for (const auto& [base, tail, joined] : cases) {
    EXPECT_EQ(JoinPath(base, tail), joined);
  }
  EXPECT_EQ(FolderOf(L"C:\\a\\b.msm"), L"C:\\a");
  EXPECT_EQ(FolderOf(L"b.msm"), L"");
}

std::vector<int> g_closed;

struct CountingTraits {
  using Handle = int;
  static constexpr int None() noexcept { return -1; }
  static void Close(int handle) noexcept {
    g_closed.push_back(handle);
    ::SetLastError(ERROR_INVALID_HANDLE);
  }
};

TEST(UniqueHandle, ClosesEachHandleOnce) {
  using Closed = std::vector<int>;
  {
    CUniqueHandle<CountingTraits> none, first(0), second(std::move(first)), target(1);
    EXPECT_FALSE(none);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved-from handle is none
    EXPECT_TRUE(second);
    target = std::move(second);
    EXPECT_EQ(g_closed, Closed{1});
    auto& itself = target;
    target = std::move(itself);
    EXPECT_EQ(0, target.Get());
    *target.Put() = 2;
    EXPECT_EQ(g_closed, (Closed{1, 0}));
    target.Reset(3);
    EXPECT_EQ(g_closed, (Closed{1, 0, 2}));
    none.Reset(4);
    EXPECT_EQ(4, none.Release());
  }
  EXPECT_EQ(g_closed, (Closed{1, 0, 2, 3}));

  ::SetLastError(ERROR_SHARING_VIOLATION);
  CUniqueHandle<CountingTraits>(5).Reset();
  const DWORD code = ::GetLastError();
  EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, code) << "closing changed the code";
}

}  // namespace
