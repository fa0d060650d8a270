#include "com/error/win32_exception.h"

#include <optional>
#include <string>
#include <utility>

#include "com/error/Raise.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(Win32ExceptionTest, TakesTheCodeBeforeAnythingCanChangeIt) {
  ::SetLastError(ERROR_SHARING_VIOLATION);
  EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, win32_exception().code());
  ::SetLastError(ERROR_PATH_NOT_FOUND);
  try {
    com::RaiseLastError();
  } catch (const win32_exception& failure) {
    EXPECT_EQ(DWORD{ERROR_PATH_NOT_FOUND}, failure.code());
  }
}

TEST(Win32ExceptionTest, CopiesShareOneText) {
  const long blocks = heap::Live();
  {
    ::SetLastError(ERROR_ACCESS_DENIED);
    std::optional<win32_exception> first(std::in_place);
    const win32_exception before(*first);
    const wchar_t* const text = first->message();
    const win32_exception after(*first);
    win32_exception assigned;
    assigned = after;
    first.reset();
    const std::string narrow(after.what());
    EXPECT_EQ(SystemText(E_ACCESSDENIED), std::wstring(narrow.begin(), narrow.end()));
    EXPECT_EQ(SystemText(E_ACCESSDENIED), text);
    for (const auto* copy : {&before, &after, &std::as_const(assigned)}) {
      EXPECT_EQ(text, copy->message());
      EXPECT_EQ(after.what(), copy->what());
    }
  }
  EXPECT_EQ(blocks, heap::Live());
}

TEST(Win32ExceptionTest, ACodeWithoutATextHasItsHResultAndAnEmptyMessage) {
  const std::pair<DWORD, DWORD> codes[] = {{0, 0}, {0x12345, 0x80072345}, {0xA0FF1234, 0xA0FF1234}};
  for (const auto& [code, hr] : codes) {
    ::SetLastError(code);
    const win32_exception failure;
    EXPECT_EQ(hr, static_cast<DWORD>(failure.hresult()));
    EXPECT_STREQ(L"", failure.message()) << code;  // no text is known
    EXPECT_STREQ("", failure.what());
  }
}

}  // namespace

}  // namespace qm::tests
