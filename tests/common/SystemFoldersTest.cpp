#include "common/SystemFolders.h"

#include <filesystem>

#include "common/Path.h"
#include "tests/support/Testing.h"

namespace fs = std::filesystem;

namespace {

TEST(SystemFoldersTest, FoldersAreThoseOfTheMachine) {
  wchar_t windows[MAX_PATH];
  ::GetWindowsDirectoryW(windows, MAX_PATH);
  EXPECT_EQ(GetSystemFolder(kSysNative), JoinPath(windows, L"sysnative"));
  EXPECT_EQ(GetSystemFolder(kSysWow64), JoinPath(windows, L"syswow64"));
  EXPECT_TRUE(fs::exists(fs::path(GetSystemFolder(0).c_str()) / "kernel32.dll"));
  for (const unsigned long view : {0UL, kNativeFolder}) {
    const CWideString programs = GetProgramFolder(kProgramFiles | view);
    const CWideString common = GetProgramFolder(kCommonFiles | view);
    EXPECT_TRUE(fs::is_directory(programs.c_str()));
    EXPECT_TRUE(fs::is_directory(common.c_str()));
    EXPECT_NE(programs, common);
    EXPECT_EQ(programs, GetProgramFolder(2 | view)) << "any other request";
  }
}

}  // namespace
