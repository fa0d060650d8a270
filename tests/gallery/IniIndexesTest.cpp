#include "gallery/IniIndexes.h"

#include <filesystem>
#include <fstream>

#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace {

TEST(IniIndexesTest, MissingIndexFilesLeaveTheirTablesEmpty) {
  CIniIndexes& indexes = CIniIndexes::Instance();
  if (!indexes.FileModules().empty()) {
    GTEST_SKIP() << "this process has read its indexes; ctest gives each test its own";
  }
  const CTestFolder folder;
  const auto put = [&](const wchar_t* file, const char* text) {
    std::ofstream(std::filesystem::path(folder / file)) << text;
  };
  std::filesystem::create_directory(folder / L"none");
  ::SetEnvironmentVariableW(L"QM_MODULE_INDEX_DIR", (folder / L"none").c_str());
  ::SetEnvironmentVariableW(L"QM_FILE_INDEX_DIR", L"");  // which is not the current folder
  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(folder / L"");
  put(L"PlatformFilesToModules.ini", "[PlatformFileToModule]\nb.dll=Lamp.9\n");
  put(L"FilesToModules.ini", "[FilesToModules]\nsetup.exe=0:Lamp.9\n");
  const auto services = CreateApplicationServices();
  for (int round = 1; round <= 2; ++round) {
    indexes.LoadOnce(*services);
    EXPECT_FALSE(TakeErrorObject());
    CWideString name;
    EXPECT_FALSE(indexes.LookupModuleName(L"Lamp.9:7", name));
    EXPECT_TRUE(indexes.FileModules().empty());
    EXPECT_TRUE(indexes.PlatformFileModules().empty());
    put(L"none\\modules.ini", "[modules]\nLamp.9:7=Late\n");
  }
  std::filesystem::current_path(previous);
}

}  // namespace
