#include "catalog/KeyTable.h"

#include <filesystem>

#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(KeyTableTest, FindsRecordsByIdAndVersionInLowerCase) {
  const TestFolder folder;
  const std::filesystem::path& root = folder.Path();
  std::filesystem::create_directories(root / "ObjectGallery");
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", root.c_str());
  const auto described = [&](const wchar_t* id, const wchar_t* version) {
    const std::wstring file = (root / "ObjectGallery" / "x.ini").wstring();
    ::WritePrivateProfileStringW(L"MergeModule", L"ModuleID", id, file.c_str());
    ::WritePrivateProfileStringW(L"MergeModule", L"Version", version, file.c_str());
    auto record = std::make_shared<module::CCacheMSM>();
    record->InitFromGallery(L"x");
    return record;
  };
  const std::shared_ptr<module::CCacheMSM> kept[] = {
      described(L"Lamp.B", L"2.0RC"), described(L"Lamp", L""), described(L"LAMP", L"1.0x64")};
  std::vector<std::weak_ptr<module::CCacheMSM>> records(std::begin(kept), std::end(kept));
  records.push_back(described(L"Gone", L"1.0"));
  catalog::KeyTable table;
  for (const wchar_t* key : {L"lamp.b:2.0rc", L"lamp:0", L"lamp:1.0x64"}) {
    EXPECT_TRUE(table.Contains(key, records)) << key;
  }
  for (const wchar_t* key : {L"gone:1.0", L"Lamp:0", L"lamp:", L"lamp", L"lamp.b:2.0", L""}) {
    EXPECT_FALSE(table.Contains(key, records)) << key;
  }
  const auto late = described(L"Late", L"1");
  records.push_back(late);
  EXPECT_FALSE(table.Contains(L"late:1", records)) << "was taken up without Clear";
  table.Clear();
  EXPECT_TRUE(table.Contains(L"late:1", records));
}

}  // namespace

}  // namespace qm::tests
