#include "merge/ReadModule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "merge/TargetFolders.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/InstallerTables.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A module into which "Glyph" was merged when it was made.
DatabaseImage Sample() {
  const auto table = [](const char* name, std::vector<std::vector<Cell>> rows) {
    return TableImage{name, ColumnsOf(name), std::move(rows)};
  };
  return {
      {
          table("ModuleSignature", {{"Pens.1", 1033, "1.2"}, {"Glyph.2", 0, "3.0"}}),
          table("ModuleDependency",
                {{"pens.1", 1031, "Base.3", 0, nullptr}, {"Glyph.2", 0, "Font.4", 1033, "2.0"}}),
          table("ModuleExclusion", {{"Pens.1", 1033, "Ink.5", -1033, "1.0", nullptr}}),
          table("Directory", {{"TARGETDIR", nullptr, "SourceDir"}, {"Bin.1", "TARGETDIR", "bin"}}),
          table("Component", {{"C.1", "{1}", "Bin.1", 264, "VersionNT64", "F1"}}),
          table("File", {{"F1", "C.1", "PE~1.DLL|p\xE4n.dll", 70000, "1.0", "1033", 1},
                         {"F2", "Gone", "b.txt", 0, nullptr, nullptr, 2}}),
          table("CustomAction", {{"SetBin", 51, "Bin.1", "[SystemFolder]bin"}}),
          table("Binary", {{"Icon", 1}, {"One", 1}, {"None", nullptr}, {"Lost", 1}}),
      },
      {{RowStream(u"Binary.Icon"), image::Bytes(5000, 'i')}, {RowStream(u"Binary.One"), {'1'}}}};
}

merge::Module Read(const DatabaseImage& database) {
  std::vector<Stream> streams = WriteDatabase(database);
  streams.push_back(
      WriteSummary(1252, {{3, "Pens"}, {4, "J\xFCrgen"}, {7, "x64;1033,2057"}, {9, "{1234}"}}));
  MemorySource source = WriteCompoundFile(std::move(streams)).Source();
  return merge::ReadModule(source, merge::DecodeCommonCodePage);
}

TEST(ReadModuleTest, EveryCellAndEveryFactIsThere) {
  for (const unsigned referenceSize : {2U, 3U}) {
    DatabaseImage image = Sample();
    image.referenceSize = referenceSize;
    const merge::Module original = Read(image);
    const merge::Module module = original;  // a copy shares the texts
    EXPECT_EQ("", module.failure);
    EXPECT_EQ("Pens.1:1033 Pens.1 1.2 {1234}",
              module.key + ' ' + module.moduleId + ' ' + module.version + ' ' + module.packageCode);
    EXPECT_EQ("Pens Jürgen x64", module.subject + ' ' + module.author + ' ' + module.platform);
    EXPECT_THAT(module.languages, ElementsAre(1033, 2057));

    ASSERT_EQ(2u, module.files.size());
    const merge::DeliveredFile& file = module.files[0];
    EXPECT_EQ("pän.dll", file.name);
    EXPECT_EQ("PE~1.DLL", file.shortName);
    EXPECT_EQ("Bin.1", file.directory);
    EXPECT_EQ("C.1", file.component);
    EXPECT_EQ(70000, file.size);
    EXPECT_EQ("1033", file.language);
    EXPECT_EQ(1, file.sequence);
    EXPECT_EQ("b.txt", module.files[1].name);
    EXPECT_EQ("", module.files[1].shortName);
    EXPECT_EQ("", module.files[1].directory);
    ASSERT_EQ(1u, module.components.size());
    EXPECT_TRUE(module.components[0].Is64Bit());
    EXPECT_EQ("VersionNT64", module.components[0].condition);
    EXPECT_EQ("F1", module.components[0].keyPath);
    ASSERT_EQ(2u, module.directories.size());
    EXPECT_EQ("TARGETDIR", module.directories[1].parent);
    ASSERT_EQ(1u, module.customActions.size());
    EXPECT_EQ("[SystemFolder]bin", module.customActions[0].target);

    ASSERT_EQ(8u, module.tables->All().size());
    EXPECT_EQ(nullptr, module.FindTable("file"));
    const merge::Table& files = *module.FindTable("File");
    EXPECT_EQ("File", files.Name());
    EXPECT_EQ(72u, files.Columns()[0].width);
    EXPECT_TRUE(files.Columns()[0].isKey);
    EXPECT_EQ(4u, files.Columns()[3].width);
    EXPECT_TRUE(files.Columns()[4].isNullable);
    EXPECT_FALSE(files.Columns()[5].isKey);
    EXPECT_EQ("p\xC3\xA4n.dll", files.Text(0, 2).substr(9));
    EXPECT_EQ(0, files.Number(1, 3));
    EXPECT_FALSE(files.IsNull(1, 3));
    EXPECT_TRUE(files.IsNull(1, 4));
    EXPECT_EQ(std::nullopt, files.Number(0, 4));
    EXPECT_EQ(files.TextNumber(0, 1), module.FindTable("Component")->TextNumber(0, 0));
    const merge::Table& binaries = *module.FindTable("Binary");
    EXPECT_EQ("binary of 5000 bytes", binaries.Format(0, 1));
    EXPECT_EQ("binary of 1 byte", binaries.Format(1, 1));
    EXPECT_EQ("", binaries.Format(2, 1));
    EXPECT_EQ(std::nullopt, binaries.StreamSize(3, 1));
  }
}

TEST(ReadModuleTest, RowsOfCarriedModulesNameTheirOwner) {
  const merge::Module module = Read(Sample());
  ASSERT_EQ(2u, module.requirements.size());
  EXPECT_EQ("Base.3", module.requirements[0].moduleId);
  EXPECT_EQ("", module.requirements[0].carriedFrom);  // an ID decides, whatever its case
  EXPECT_EQ("Font.4:1033, at least 2.0", merge::FormatRequirement(module.requirements[1]));
  EXPECT_EQ("Glyph.2:0", module.requirements[1].carriedFrom);
  ASSERT_EQ(1u, module.exclusions.size());
  EXPECT_EQ("", module.exclusions[0].carriedFrom);
  EXPECT_EQ(-1033, module.exclusions[0].language);
  EXPECT_EQ("1.0", module.exclusions[0].minVersion);
  ASSERT_EQ(1u, module.carried.size());
  EXPECT_EQ("Glyph.2", module.carried[0].moduleId);

  DatabaseImage nameless = Sample();
  nameless.tables[0].rows.clear();
  for (const merge::Requirement& requirement : Read(nameless).requirements) {
    EXPECT_EQ("", requirement.carriedFrom);
  }
}

TEST(ReadModuleTest, DamageIsReportedAndTheRestIsRead) {
  const struct {
    std::function<void(DatabaseImage&)> damage;
    const char* failure;
    size_t files;
  } cases[] = {
      {[](DatabaseImage& image) { image.tables.erase(image.tables.begin()); },
       "There is no table \"ModuleSignature\".", 2},
      {[](DatabaseImage& image) { image.tables[5].columns[2].first = "Name"; },
       "Table \"File\" has no column \"FileName\".", 2},
      {[](DatabaseImage& image) { image.tables[5].rows[0][2] = std::string(1025, 'x'); },
       "Row 1 of table \"File\" has a name of more than 1024 bytes.", 1},
      {[](DatabaseImage& image) { image.tables[5].columns[6].second = kShort | 0x07; },
       "Column \"Sequence\" of table \"File\" has numbers of 7 bytes.", 0},
      {[](DatabaseImage& image) {
         image.tables[4].columns.pop_back();  // KeyPath, without which there is nothing wrong
         image.tables[4].rows[0].pop_back();
       },
       "", 2},
      {[](DatabaseImage& image) { image.codePage = 737; },
       "The texts are in code page 737, which this system does not have.", 2},
  };
  for (const auto& [damage, failure, files] : cases) {
    DatabaseImage image = Sample();
    damage(image);
    const merge::Module module = Read(image);
    EXPECT_EQ(failure, module.failure);
    EXPECT_EQ(files, module.files.size());
    EXPECT_EQ(1u, module.components.size());
  }
}

TEST(ReadModuleTest, ATableKeepsTheRowsBeforeADamagedOne) {
  CompoundFileImage file = WriteCompoundFile(WriteDatabase(Sample()));
  file.Put(file.MiniData(TableStream("File")) + 2, 2, 0x7FFF);  // the key of the second row
  MemorySource source = file.Source();
  const merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage);
  EXPECT_THAT(module.failure, HasSubstr("Row 2 of table \"File\" names string 32767"));
  EXPECT_EQ(module.failure, module.FindTable("File")->Failure());
  ASSERT_EQ(1u, module.files.size());
  EXPECT_EQ("F1", module.files[0].key);
  EXPECT_EQ(2u, module.requirements.size());
}

/// Asks for everything that a damaged module may still have.
void UseModule(const merge::Module& module) {
  EXPECT_TRUE(module.tables || !module.failure.empty());
  const merge::TargetFolders folders(module);
  for (const merge::DeliveredFile& file : module.files) {
    merge::FormatTargetFolder(folders.Resolve(file.directory));
  }
  if (!module.tables) {
    return;
  }
  for (const merge::Table& table : module.tables->All()) {
    for (size_t row = 0; row < table.RowCount(); ++row) {
      for (size_t column = 0; column < table.Columns().size(); ++column) {
        EXPECT_TRUE(!table.IsNull(row, column) || table.Format(row, column).empty());
      }
    }
  }
}

TEST(ReadModuleTest, NoFileIsReadForLongerThanItsSizeJustifies) {
  for (const auto& entry : std::filesystem::directory_iterator(
           std::filesystem::path(QM_SOURCE_DIR) / "tests/image/corpus/file")) {
    SCOPED_TRACE(entry.path().string());
    std::ifstream stream(entry.path(), std::ios::binary);
    MemorySource source(image::Bytes(std::istreambuf_iterator<char>(stream), {}));
    UseModule(merge::ReadModule(source, merge::DecodeCommonCodePage));
    EXPECT_LE(source.bytesRead, 20 * source.Size() + 8192);
  }
}

TEST(ReadModuleTest, AModuleWithADamagedByteCanBeUsed) {
  const CompoundFileImage file = WriteCompoundFile(WriteDatabase(Sample()));
  for (size_t offset = 0; offset < file.bytes.size(); offset += 11) {
    SCOPED_TRACE(offset);
    image::Bytes bytes = file.bytes;
    bytes[offset] = static_cast<std::uint8_t>(bytes[offset] + (offset % 2 == 0 ? 1 : 0x80));
    MemorySource source(std::move(bytes));
    UseModule(merge::ReadModule(source, merge::DecodeCommonCodePage));
  }
}

}  // namespace

}  // namespace qm::tests
