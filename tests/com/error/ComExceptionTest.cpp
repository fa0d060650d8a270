#include "com/error/ComException.h"

#include <utility>

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

// A class that is registered wherever the installer is.
constexpr wchar_t kProgId[] = L"WindowsInstaller.Installer";
constexpr GUID kClsid = {0x000C1090, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constexpr GUID kIid = {0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

TEST(ComExceptionTest, CapturesAndConsumesTheErrorObject) {
  const std::pair<const wchar_t*, GUID> cases[] = {
      {kProgId, kClsid}, {L"No.Such.ProgID", GUID_NULL}, {L"", GUID_NULL}};
  for (const auto& [source, clsid] : cases) {
    LeaveErrorObject(L"It is broken.", source, kIid);
    const com_exception failure(E_FAIL);
    EXPECT_EQ(E_FAIL, failure.hr);
    EXPECT_EQ(failure.description, L"It is broken.");
    EXPECT_EQ(failure.source, source);
    EXPECT_TRUE(failure.iid == kIid);
    EXPECT_TRUE(failure.clsid == clsid) << failure.source.c_str();
    EXPECT_FALSE(TakeErrorObject());
  }
}

TEST(ComExceptionTest, WithoutErrorObjectTakesTheSystemText) {
  const com_exception known(E_ACCESSDENIED);
  EXPECT_NE(known.description, L"Unknown error");
  EXPECT_EQ(known.description, SystemText(E_ACCESSDENIED));
  EXPECT_EQ(known.source, L"");
  EXPECT_TRUE(known.iid == GUID_NULL && known.clsid == GUID_NULL);
  EXPECT_EQ(com_exception(static_cast<HRESULT>(0xA0FF1234)).description, L"Unknown error");
  LeaveErrorObject(L"other");
  EXPECT_EQ(com_exception(E_FAIL, L"mine").description, L"mine");
  EXPECT_TRUE(TakeErrorObject());
}

TEST(ComExceptionTest, GetErrorMessageCutsToTheBuffer) {
  const std::pair<UINT, const wchar_t*> cases[] = {{0, L"####"}, {1, L""},     {3, L"ab"},
                                                   {4, L"abc"},  {5, L"abcd"}, {9, L"abcd"}};
  const com::CComException exception(com_exception(E_FAIL, L"abcd"));
  const com::CException& base = exception;
  for (const auto& [size, text] : cases) {
    wchar_t buffer[10] = L"####";
    UINT help = 77;
    EXPECT_EQ(TRUE, base.GetErrorMessage(buffer, size, &help)) << size;
    EXPECT_STREQ(text, buffer);
    EXPECT_EQ(77U, help);
  }
}

}  // namespace

}  // namespace qm::tests
