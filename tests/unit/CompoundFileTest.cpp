#include "msidb/CompoundFile.h"

#include <filesystem>
#include <fstream>

#include "tests/unit/TestDatabase.h"
#include "tests/unit/Testing.h"

namespace {

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(CompoundFile, EveryFileThatIsCutIsRecognised) {
  const CTempFile wholeFile, cutFile;
  const std::filesystem::path whole(wholeFile.path), cut(cutFile.path);
  {
    msidb::Database database = msidb::Database::Open(whole.c_str(), MSIDBOPEN_CREATE);
    database.Commit();
  }
  const std::string bytes = ReadAll(whole);
  EXPECT_FALSE(msidb::IsCutShort(whole.c_str()));
  // What is shorter than a header is for the installer to refuse.
  for (size_t length = 512; length < bytes.size(); length += 100) {
    std::ofstream(cut, std::ios::binary) << bytes.substr(0, length);
    EXPECT_TRUE(msidb::IsCutShort(cut.c_str())) << length << " of " << bytes.size();
  }
  for (const std::string& other : {std::string(), bytes.substr(0, 511), std::string(5000, 'x')}) {
    std::ofstream(cut, std::ios::binary) << other;
    EXPECT_FALSE(msidb::IsCutShort(cut.c_str()));
  }
  // A table that refers to sectors of every kind of nonsense.
  for (size_t offset = 0x1E; offset < 0x60; ++offset) {
    std::string broken = bytes;
    broken[offset] = static_cast<char>(0xFF);
    std::ofstream(cut, std::ios::binary) << broken;
    msidb::IsCutShort(cut.c_str());
  }
  std::filesystem::remove(whole);
  EXPECT_FALSE(msidb::IsCutShort(whole.c_str())) << "a file that is gone";
}

TEST(CompoundFile, TablesThatAreListedOutsideTheHeader) {
  const CTempFile file;
  const std::filesystem::path path(file.path);
  // A file of 110 table sectors, the last of which only the list names; each table sector stands
  // for 128 sectors, of which only the first is in use.
  constexpr DWORD kTables = 110;
  std::string bytes((1 + kTables * 128 + 2) * 512, '\0');
  const auto put = [&](size_t offset, DWORD value) { memcpy(&bytes[offset], &value, 4); };
  memcpy(bytes.data(), "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
  bytes[0x1E] = 9;
  const DWORD listSector = kTables * 128;
  put(0x2C, kTables);
  put(0x44, listSector);
  put(0x48, 1);
  for (DWORD table = 0; table < kTables; ++table) {
    const DWORD sector = table * 128;
    put(table < 109 ? 0x4C + 4 * table : (listSector + 1) * 512, sector);
    memset(&bytes[(sector + 1) * 512], 0xFF, 512);
    put((sector + 1) * 512, 0xFFFFFFFD);
  }
  const auto isCut = [&](size_t length) {
    std::ofstream(path, std::ios::binary) << bytes.substr(0, length);
    return msidb::IsCutShort(path.c_str());
  };
  EXPECT_FALSE(isCut(bytes.size()));
  EXPECT_FALSE(isCut((listSector + 2) * 512)) << "free sectors may be missing";
  EXPECT_TRUE(isCut((listSector + 1) * 512)) << "the list is missing";
  EXPECT_TRUE(isCut((109 * 128 + 1) * 512)) << "the last table is missing";
}

}  // namespace
