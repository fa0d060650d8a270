#include "module/CacheMSM.h"

#include <filesystem>

#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(CacheMSMTest, ARecordOfTheGalleryIsFilledFromItsDescriptionAlone) {
  const TestFolder folder;
  const std::filesystem::path& root = folder.Path();
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", root.c_str());
  ::SetEnvironmentVariableW(L"QM_MODULE_PATH", root.c_str());
  std::filesystem::create_directory(root / "ObjectGallery");
  const auto describe = [&](std::wstring_view text) {
    PutFile(root / "ObjectGallery" / "lamp.ini",
            {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)});
  };
  const std::wstring path = folder / L"lamp.msm";
  PutFile(path, "no database: its tables are not read");
  describe(
      L"\uFEFF[mergemodule]\r\nFileName=lamp.msm\r\nLanguage=1049x\r\nModuleID=Лампа.1\r\n"
      L"Author=Ζωή\r\nComments=光\r\nSubject=Lampe für \U0001F600\r\nVersion=2.0\r\n"
      L"[LAMP.MSM]\r\nLocation=x\r\n");
  module::CCacheMSM record;
  record.InitFromGallery(L"lamp");
  EXPECT_EQ(record.Path(), path);
  EXPECT_EQ(1049, record.Language());
  EXPECT_EQ(record.ModuleID(), L"Лампа.1");
  EXPECT_EQ(record.Key(), L"Лампа.1:1049");
  EXPECT_EQ(record.Version(), L"2.0");
  EXPECT_EQ(record.Author(), L"Ζωή");
  EXPECT_EQ(record.Comments(), L"光");
  EXPECT_EQ(record.Subject(), L"Lampe für \U0001F600");
  EXPECT_EQ(record.DisplayName(), L"Lampe für \U0001F600");
  EXPECT_EQ(record.PackageCode(), L"lamp");
  EXPECT_EQ(record.GetOrigin(), L"");
  VARIANT_BOOL needsDownload = VARIANT_FALSE;
  EXPECT_EQ(S_OK, record.GetNeedsDownload(&needsDownload));
  EXPECT_EQ(VARIANT_TRUE, needsDownload) << "no version is known";

  EXPECT_TRUE(record.GetDialogs().empty());
  EXPECT_TRUE(record.GetCustomActions().empty());
  EXPECT_TRUE(record.GetDependencies().empty());
  EXPECT_TRUE(record.GetExclusions().empty());
  EXPECT_TRUE(record.GetFiles().empty());

  describe(L"\uFEFF[MergeModule]\r\nFileName=lamp.msm\r\n[lamp.msm]\r\nLocation=x\r\n");
  module::CCacheMSM nameless;
  nameless.InitFromGallery(L"lamp");
  EXPECT_EQ(nameless.DisplayName(), path) << "without a subject";
  EXPECT_EQ(nameless.Key(), L":0");
}

}  // namespace

}  // namespace qm::tests
