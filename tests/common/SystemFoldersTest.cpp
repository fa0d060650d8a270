#include "common/SystemFolders.h"

#include <filesystem>

#include "common/Path.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace fs = std::filesystem;

namespace {

TEST(SystemFoldersTest, FoldersAreThoseOfTheMachine) {
  wchar_t windows[MAX_PATH];
  ::GetWindowsDirectoryW(windows, MAX_PATH);
  EXPECT_EQ(common::GetSystemFolder(common::kSysNative), common::JoinPath(windows, L"sysnative"));
  EXPECT_EQ(common::GetSystemFolder(common::kSysWow64), common::JoinPath(windows, L"syswow64"));
  EXPECT_TRUE(fs::exists(fs::path(common::GetSystemFolder(0).c_str()) / "kernel32.dll"));
  for (const unsigned long view : {0UL, common::kNativeFolder}) {
    const common::WideString programs = common::GetProgramFolder(common::kProgramFiles | view);
    const common::WideString common = common::GetProgramFolder(common::kCommonFiles | view);
    EXPECT_TRUE(fs::is_directory(programs.c_str()));
    EXPECT_TRUE(fs::is_directory(common.c_str()));
    EXPECT_NE(programs, common);
    EXPECT_EQ(programs, common::GetProgramFolder(2 | view)) << "any other request";
  }
}

}  // namespace

}  // namespace qm::tests
