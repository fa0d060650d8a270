#include "image/Database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/DatabaseFile.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;

const std::u16string kPool = TableStream("_StringPool");
const std::u16string kSummary = u"\005SummaryInformation";
const std::u16string kFont = RowStream(u"Binary.Font");
const std::u16string kSpare = RowStream(u"Binary.Spare_1");

/// A database that has something of everything; `value` is the value of its property P.
DatabaseImage Sample(const std::string& value = "x") {
  return {{
              {"ModuleSignature",
               {{"ModuleID", kText | kKey}, {"Language", kShort | kKey}, {"Version", kText}},
               {{"Pens.1234", 1033, "1.0"}}},
              {"File",
               {{"File", kText | kKey}, {"Size", kLong | kNullable}, {"Order", kByte | kNullable}},
               {{"a.txt", 2147483647, 32767},
                {"b.txt", -2147483647, -32767},
                {"c.txt", nullptr, nullptr},
                {nullptr, 0, 0}}},
              {"Property", {{"Property", kText | kKey}, {"Value", kText}}, {{"P1", value}}},
              {"Patch", {{"Name", kText | kKey}}, {}},
              {"Binary",
               {{"Name", kText | kKey}, {"Data", kData | kNullable}},
               {{"Icon", 1}, {"Font", 1}, {"None", nullptr}, {"Lost", 1}}},
          },
          {{RowStream(u"Binary.Icon"), image::Bytes(70, 'i')},
           {kFont, image::Bytes(5000, 'f')},
           {kSpare, {}}}};
}

CompoundFileImage Write(const DatabaseImage& database, unsigned sectorShift = 9) {
  std::vector<Stream> streams = WriteDatabase(database);
  streams.push_back(WriteSummary(1252, {{2, "Merge Module"}, {9, "{1234}"}}));
  return WriteCompoundFile(std::move(streams), sectorShift);
}

/// The whole contents of a database as lines of text.
std::vector<std::string> Contents(image::Database& database) {
  std::vector<std::string> lines;
  database.Verify();
  for (const std::string_view name : database.TableNames()) {
    const image::TableRows rows = database.ReadTable(name);
    for (std::size_t row = 0; row < rows.Count(); ++row) {
      std::string line(name);
      for (std::size_t i = 0; i < rows.Definition().columns.size(); ++i) {
        line += '|';
        const image::ColumnKind kind = rows.Definition().columns[i].kind;
        if (kind == image::ColumnKind::Text) {
          line += rows.Text(row, i).substr(0, 10);
        } else if (kind == image::ColumnKind::Integer) {
          const auto number = rows.Integer(row, i);
          line += number ? std::to_string(*number) : "null";
        } else {
          const auto bytes = database.ReadStream(rows, row, i, [](std::string_view text) {
            return std::u16string(text.begin(), text.end());
          });
          line += bytes ? std::to_string(bytes->size()) + static_cast<char>(bytes->back()) : "null";
        }
      }
      lines.push_back(line);
    }
  }
  if (const auto summary = database.ReadSummary()) {
    lines.push_back(std::to_string(summary->CodePage()) + std::string(*summary->Text(9)));
  }
  return lines;
}

const auto kSampleContents = ElementsAre(
    "ModuleSignature|Pens.1234|1033|1.0", "File|a.txt|2147483647|32767",
    "File|b.txt|-2147483647|-32767", "File|c.txt|null|null", "File||0|0", "Property|P1|x",
    "Binary|Icon|70i", "Binary|Font|5000f", "Binary|None|null", "Binary|Lost|null", "1252{1234}");

TEST(DatabaseTest, ReadsEveryValueInEveryLayout) {
  for (const unsigned sectorShift : {9U, 12U}) {
    for (const unsigned referenceSize : {2U, 3U}) {
      DatabaseImage image = Sample();
      image.codePage = 65001;
      image.referenceSize = referenceSize;
      MemorySource source = Write(image, sectorShift).Source();
      image::Database database(source);
      EXPECT_THAT(Contents(database), kSampleContents);
      EXPECT_THAT(database.Defects(), testing::IsEmpty());
      EXPECT_EQ(database.UnknownKind(), std::nullopt);
      EXPECT_EQ(database.Strings().CodePage(), 65001U);
      EXPECT_THAT(database.TableNames(),
                  ElementsAre("ModuleSignature", "File", "Property", "Patch", "Binary"));
      EXPECT_TRUE(database.HasTable("Patch"));
      EXPECT_FALSE(database.HasTable("patch"));
      EXPECT_EQ(database.ReadTable("File").Definition().FindColumn("Order"), 2U);
      EXPECT_EQ(database.ReadTable("File").Definition().FindColumn("order"), std::nullopt);
      EXPECT_EQ(database.ReadSummary()->Text(3), std::nullopt);
    }
  }
}

TEST(DatabaseTest, ReadsStringsAndNumbersOfStringsAboveSixteenBits) {
  DatabaseImage image = Sample(std::string(140000, 'l'));
  image.referenceSize = 3;
  std::vector<std::vector<Cell>>& rows = image.tables[2].rows;
  for (int i = 0; i < 70000; ++i) {
    rows.push_back({"P" + std::to_string(i), "V"});
  }
  MemorySource source = Write(image).Source();
  image::Database database(source);
  const image::TableRows properties = database.ReadTable("Property");
  EXPECT_EQ(properties.Text(0, 1), std::string(140000, 'l'));
  EXPECT_EQ(properties.Text(70000, 0), "P69999");
  EXPECT_GT(properties.StringNumber(70000, 0), 0xFFFFU);
}

TEST(DatabaseTest, ReadsOnlyWhatIsNeededOfALargeFile) {
  // An allocation table that outgrows the header; a size that is negative in 32 bits.
  const std::pair<unsigned, std::uint64_t> cases[] = {{9, 9 << 20U}, {12, 0x80000000}};
  for (const auto& [sectorShift, hole] : cases) {
    DatabaseImage image = Sample();
    image.streams.push_back({std::u16string(31, u'z'), image::Bytes(1, 'c'), hole});
    const CompoundFileImage file = Write(image, sectorShift);
    MemorySource source = file.Source();
    image::Database database(source);
    EXPECT_THAT(Contents(database), kSampleContents);
    EXPECT_THAT(database.Defects(), testing::IsEmpty());
    EXPECT_LT(source.bytesRead, 100000U);
  }
}

using Change = std::function<void(CompoundFileImage&)>;

/// Replaces a number of `size` bytes in the header.
Change Header(std::size_t offset, unsigned size, std::uint32_t value) {
  return [=](CompoundFileImage& file) { file.Put(offset, size, value); };
}

/// The same in a stream's entry of the directory.
Change Entry(const std::u16string& stream, std::size_t offset, unsigned size, std::uint32_t value) {
  return [=](CompoundFileImage& file) { file.Put(file.Entry(stream) + offset, size, value); };
}

/// The same in a stream below 4,096 bytes.
Change Data(const std::u16string& stream, std::size_t offset, unsigned size, std::uint32_t value) {
  return [=](CompoundFileImage& file) { file.Put(file.MiniData(stream) + offset, size, value); };
}

Change BeginWith(std::string_view text) {
  return [=](CompoundFileImage& file) { std::copy(text.begin(), text.end(), file.bytes.begin()); };
}

Change Cut(std::size_t size) {
  return [=](CompoundFileImage& file) {
    file.bytes.resize(size);
    file.size = size;
  };
}

TEST(DatabaseTest, EachDamageIsRefusedWithItsCause) {
  using File = CompoundFileImage;
  const std::u16string tables = TableStream("_Tables");
  const std::u16string columns = TableStream("_Columns");
  const std::u16string rows = TableStream("File");
  constexpr image::DamagedPart kNone = image::DamagedPart::NoDatabase;
  constexpr image::DamagedPart kAll = image::DamagedPart::Structure;
  constexpr image::DamagedPart kTable = image::DamagedPart::Table;
  constexpr image::DamagedPart kRow = image::DamagedPart::Row;
  constexpr image::DamagedPart kSum = image::DamagedPart::Summary;
  const struct {
    Change damage;
    image::DamagedPart part;
    std::string_view sentence;
  } cases[] = {
      // Files of other kinds.
      {Cut(0), kNone, "The file is empty."},
      {Cut(7), kNone, "The file is not an installer database."},
      {BeginWith("MSCF"), kNone, "The file is a cabinet, not an installer database."},
      {BeginWith("MZ"), kNone, "The file is a program, not an installer database."},
      {BeginWith("PK\x03\x04"), kNone, "The file is a ZIP archive, not an installer database."},
      {Entry(kPool, 0, 2, 'x'), kNone,
       "The file is a compound file without the string pool of an installer database."},
      {Entry(kPool, 0x42, 2, 1), kNone,
       "The file is a compound file without the string pool of an installer database."},
      // The header.
      {Cut(511), kAll, "The file ends inside its header, after 511 of 512 bytes."},
      {Cut(512), kAll, "The allocation table claims 1 of 0 sectors."},
      {Header(0x1C, 2, 0xFEFF), kAll, "The header has no byte-order mark."},
      {Header(0x1E, 2, 10), kAll, "The header states a sector size of 2 to the power of 10 bytes."},
      {Header(0x1E, 2, 12), kAll,
       "The header states a sector size of 4096 bytes, which version 3 does not have."},
      {Header(0x20, 2, 7), kAll,
       "The header states a mini sector size of 2 to the power of 7 bytes and a limit of 4096 "
       "bytes."},
      {Header(0x38, 4, 0), kAll,
       "The header states a mini sector size of 2 to the power of 6 bytes and a limit of 0 bytes."},
      // The allocation table.
      {Header(0x2C, 4, 4000), kAll, "The allocation table claims 4000 of 18 sectors."},
      {Header(0x4C, 4, 0x10000), kAll, "The allocation table lies in sector 65536 of 18."},
      {[](File& f) {
         f.size += 0x10000;
         f.Put(0x30, 4, 130);
       },
       kAll, "The allocation table has 128 entries and none for sector 130."},
      {[](File& f) {
         f.size += 0x800000;
         f.Put(0x2C, 4, 120);
         f.Put(0x30, 4, 14000);
       },
       kAll, "The list of the allocation table's sectors ends after 109 of 120."},
      // The directory.
      {Header(0x30, 4, 99999), kAll, "The directory leads to sector 99999 of 18."},
      {[](File& f) { f.Put(f.TableEntry(f.directory), 4, 200); }, kAll,
       "The directory leads to sector 200 of 18."},
      {[](File& f) { f.Put(f.TableEntry(f.directory + 2), 4, f.directory); }, kAll,
       "The directory comes back to sector 1."},
      {[](File& f) { f.bytes[f.Sector(f.directory) + 0x42] = 1; }, kAll,
       "The directory does not begin with its root."},
      {Entry(kPool, 0x44, 4, 999), kAll, "The directory refers to entry 999 of 16."},
      {Entry(kPool, 0x48, 4, 1), kAll, "The directory refers to entry 1 twice."},
      {Entry(kPool, 0x40, 2, 31), kAll, "The directory has an entry whose name takes up 31 bytes."},
      {Entry(kPool, 0x40, 2, 0), kAll, "The directory has an entry whose name takes up 0 bytes."},
      {Entry(kPool, 0x40, 2, 66), kAll, "The directory has an entry whose name takes up 66 bytes."},
      // The mini stream.
      {[](File& f) { f.Put(f.Sector(f.directory) + 0x74, 4, 0xFFFFFF); }, kAll,
       "The mini stream leads to sector 16777215 of 18."},
      {[](File& f) { f.Put(f.Sector(f.directory) + 0x78, 4, 0xFFFFFF); }, kAll,
       "The mini stream claims 16777215 bytes of a file of 9728."},
      {Header(0x3C, 4, 0x7FFFFFFF), kAll,
       "The mini stream's allocation table leads to sector 2147483647 of 18."},
      {Header(0x3C, 4, 0xFFFFFFFE), kAll,
       "The mini stream's allocation table has 0 entries and none for sector 11."},
      // The strings.
      {Entry(kPool, 0x78, 4, 0x1000000), kAll,
       "The string pool claims 16777216 bytes of a file of 9728."},
      {Entry(kPool, 0x74, 4, 99999), kAll, "The string pool leads to sector 99999 of 16."},
      {[](File& f) { f.Put(f.MiniTableEntry(kPool), 4, f.firstSectors[kPool]); }, kAll,
       "The string pool comes back to sector 11."},
      {[](File& f) { f.Put(f.MiniTableEntry(kPool), 4, 0xFFFFFFFE); }, kAll,
       "The string pool ends after 1 of 2 mini sectors."},
      {Data(kPool, 4, 2, 9999), kAll, "String 1 of the pool ends at byte 9999 of 129."},
      {[](File& f) {
         f.Put(f.Entry(kPool) + 0x78, 4, 8);
         f.Put(f.MiniData(kPool) + 4, 4, 0x10000);
       },
       kAll, "The string pool ends inside string 1."},
      {Entry(TableStream("_StringData"), 0, 2, 'x'), kAll,
       "String 1 of the pool ends at byte 15 of 0."},
      // The definitions of tables; column 2 of File is row 5 of the columns.
      {Entry(tables, 0x78, 2, 9), kAll,
       "Table \"_Tables\" has 9 bytes, which is not a whole number of rows of 2."},
      {Data(tables, 2, 2, 999), kAll, "Row 2 of table \"_Tables\" names string 999 of 24."},
      {Data(columns, 52, 2, 999), kAll, "Row 5 of table \"_Columns\" names string 999 of 24."},
      {Data(columns, 30, 2, 0x8007), kTable, "Table \"File\" has column 3 where column 2 belongs."},
      {Data(columns, 30, 2, 0x8001), kTable, "Table \"File\" has column 1 where column 2 belongs."},
      {Data(columns, 74, 2, 0x8103), kTable,
       "Column \"Size\" of table \"File\" has numbers of 3 bytes."},
      {Data(columns, 16, 2, 6), kTable, "Table \"Patch\" has no columns."},
      // A table and its rows.
      {Entry(rows, 0x78, 2, 39), kTable,
       "Table \"File\" has 39 bytes, which is not a whole number of rows of 8."},
      {Entry(rows, 0x78, 4, 0x1000000), kTable,
       "Table \"File\" claims 16777216 bytes of a file of 9728."},
      {Data(rows, 2, 2, 0xFFFF), kRow, "Row 2 of table \"File\" names string 65535 of 24."},
      {[](File& f) { f.Put(f.TableEntry(f.firstSectors[kFont] + 1), 4, 1); }, kRow,
       "The data of a row ends after 6 of 10 sectors."},
      {[](File& f) {
         const std::uint32_t first = f.firstSectors[kFont];
         f.Put(f.TableEntry(first + 8), 4, first + 7);
       },
       kRow, "The data of a row comes back to sector 15."},
      {[](File& f) { Cut(f.bytes.size() - 150)(f); }, kRow,
       "The data of a row reaches beyond the end of the file."},
      // The summary; its first text is its second property.
      {Entry(kSummary, 0x78, 2, 47), kSum, "The summary information has only 47 bytes."},
      {Data(kSummary, 0, 2, 0xFEFF), kSum,
       "The summary information does not begin with its header."},
      {Data(kSummary, 24, 4, 0), kSum, "The summary information does not begin with its header."},
      {Data(kSummary, 28, 2, 0), kSum, "The summary information does not begin with its header."},
      {Data(kSummary, 44, 4, 0xFFFFFFF0), kSum,
       "The properties of the summary information begin at byte 4294967280 of 128."},
      {Data(kSummary, 52, 4, 0x20000001), kSum,
       "The summary information claims 536870913 properties in 80 bytes."},
      {Data(kSummary, 60, 4, 0xFFFFFFFF), kSum,
       "Property 1 of the summary information begins at byte 4294967295 of 80."},
      {Data(kSummary, 92, 4, 0xFFFFFFFF), kSum,
       "Property 2 of the summary information claims 4294967295 bytes of 80."},
      {Data(kSummary, 88, 4, 0x80001E), kSum,
       "Property 2 of the summary information is of an unknown type."},
  };
  for (const auto& [damage, part, sentence] : cases) {
    SCOPED_TRACE(sentence);
    CompoundFileImage image = Write(Sample());
    damage(image);
    try {
      MemorySource source = image.Source();
      image::Database database(source);
      Contents(database);
      ADD_FAILURE() << "read";
    } catch (const image::Damage& found) {
      EXPECT_EQ(found.Part(), part);
      EXPECT_EQ(std::string_view(found.what()), sentence);
    }
  }
}

TEST(DatabaseTest, RefusesTablesThatTogetherClaimMoreThanTheFile) {
  DatabaseImage image;
  image.tables = {{"Large", {{"A", kShort}}, std::vector<std::vector<Cell>>(5000, {7})},
                  {"Other", {{"A", kShort}}, std::vector<std::vector<Cell>>(2, {7})}};
  CompoundFileImage file = Write(image);
  file.Put(file.Entry(TableStream("Other")) + 0x74, 4, file.firstSectors[TableStream("Large")]);
  file.Put(file.Entry(TableStream("Other")) + 0x78, 4, 10000);
  MemorySource source = file.Source();
  image::Database database(source);
  EXPECT_EQ(database.ReadTable("Other").Count(), 5000U);
  EXPECT_THROW(database.Verify(), image::Damage);
}

TEST(DatabaseTest, FilesWithMinorDefectsAreReadAndTheDefectsListed) {
  using File = CompoundFileImage;
  constexpr auto kHarmless = image::Defect::Grade::Harmless;
  constexpr auto kSuspicious = image::Defect::Grade::Suspicious;
  const struct {
    Change change;
    std::vector<std::pair<image::Defect::Grade, std::string>> defects;
  } cases[] = {
      {[](File& f) { Cut(f.bytes.size() - 100)(f); },
       {{kHarmless, "The last sector has 412 of 512 bytes."}}},
      {[](File& f) {
         f.bytes.resize(f.bytes.size() + 700, 0xAA);
         f.size = f.bytes.size();
       },
       {{kHarmless, "The last sector has 188 of 512 bytes."}}},
      // An entry that the tree does not have, and a tree that is in no order.
      {[](File& f) { std::fill_n(&f.bytes[f.Sector(f.miniTable) - 128], 128, std::uint8_t{2}); },
       {}},
      {[](File& f) {
         const std::size_t third = f.Sector(f.directory) + 0x180;
         f.Put(third + 0x44, 4, 4);
         f.Put(third + 0x48, 4, 0xFFFFFFFF);
       },
       {{kSuspicious, "The tree of the directory is not in order."}}},
      {Entry(kSpare, 2, 2, 0),
       {{kSuspicious, "A name in the directory ends before or after its size."}}},
      {Entry(kSpare, 2 * kSpare.size(), 2, ' '),
       {{kSuspicious, "A name in the directory ends before or after its size."}}},
      {Entry(kPool, 0x7C, 4, 0xDEADBEEF), {}},  // version 3 has sizes of 32 bits
      {Entry(kSpare, 0x78, 4, 0x7FFFFFFF),
       {{kSuspicious,
         "Stream \"Binary.Spare_1\", of 2147483647 bytes, lies beyond the end of the file."}}},
      {Entry(TableStream("_StringData"), 0x78, 4, 140),
       {{kHarmless, "The string data has 11 bytes that belong to no string."}}},
      // A table without rows makes way for the name of another.
      {Data(TableStream("_Tables"), 6, 2, 1),
       {{kSuspicious, "Table \"_Tables\" names a table twice."},
        {kSuspicious,
         "Table \"_Columns\" has columns of \"Patch\", which table \"_Tables\" does not name."}}},
      {[](File& f) { f.Put(f.MiniData(kSummary) + 48, 4, 0xFFFFFFFF); }, {}},  // its size
  };
  for (const auto& [change, defects] : cases) {
    CompoundFileImage image = Write(Sample());
    change(image);
    MemorySource source = image.Source();
    image::Database database(source);
    EXPECT_THAT(Contents(database), kSampleContents);
    std::vector<std::pair<image::Defect::Grade, std::string>> found;
    for (const image::Defect& defect : database.Defects()) {
      found.emplace_back(defect.grade, defect.sentence);
    }
    EXPECT_EQ(found, defects);
  }
}

TEST(DatabaseTest, VerificationCoversStreamsThatAreNeverRead) {
  const auto spoilTable = [](std::uint32_t link, std::uint32_t next) {
    return [=](CompoundFileImage& f) {
      f.Put(f.TableEntry(f.firstSectors.at(kFont) + link), 4, next);
    };
  };
  DatabaseImage large = Sample();  // an allocation table that outgrows the header
  large.streams.push_back({std::u16string(31, u'z'), image::Bytes(1, 'c'), 9 << 20U});
  const CompoundFileImage samples[] = {Write(Sample()), Write(large)};
  const auto listSector =
      static_cast<std::uint32_t>(samples[1].bytes[0x44] | samples[1].bytes[0x45] << 8U);
  const std::string listed = "Stream \"Binary.Font\" has sector " + std::to_string(listSector) +
                             ", which belongs to another part.";
  const struct {
    Change change;
    std::string_view sentence;
    size_t sample = 0;
  } cases[] = {
      {spoilTable(2, 999), "Stream \"Binary.Font\" leads to sector 999 of 18."},
      {spoilTable(2, 1), "Stream \"Binary.Font\" has sector 1, which belongs to another part."},
      {spoilTable(2, 0xFFFFFFFE), "Stream \"Binary.Font\" has 3 sectors for 5000 bytes."},
      {[](CompoundFileImage& f) {
         f.Put(f.MiniTableEntry(RowStream(u"Binary.Icon")), 4, f.firstSectors.at(kPool));
       },
       "Stream \"_StringPool\" has sector 11, which belongs to another part."},
      {[=](CompoundFileImage& f) {
         spoilTable(2, listSector)(f);
         f.Put(f.TableEntry(listSector), 4, 0xFFFFFFFE);
       },
       listed, 1},
  };
  for (const auto& [change, sentence, sample] : cases) {
    SCOPED_TRACE(sentence);
    CompoundFileImage image = samples[sample];
    MemorySource sound = image.Source();
    image::Database(sound).VerifyStreams();
    change(image);
    MemorySource source = image.Source();
    image::Database database(source);
    try {
      database.VerifyStreams();
      ADD_FAILURE() << "passed";
    } catch (const image::Damage& found) {
      EXPECT_EQ(found.Part(), image::DamagedPart::Structure);
      EXPECT_EQ(std::string_view(found.what()), sentence);
    }
  }
}

// Many rows that share one long name take no noticeable time.
TEST(DatabaseTest, ReadsATableOfTablesThatRepeatsALongName) {
  const std::string name(400000, 'n');
  DatabaseImage image;
  image.tables.push_back({name, {{"K", kKey | kShort}}, {}});
  std::vector<Stream> streams = WriteDatabase(image);
  for (Stream& stream : streams) {
    if (stream.name == TableStream("_Tables")) {
      const image::Bytes row = stream.bytes;
      for (int i = 0; i < 50000; ++i) {
        stream.bytes.insert(stream.bytes.end(), row.begin(), row.end());
      }
    }
  }
  MemorySource source = WriteCompoundFile(std::move(streams)).Source();
  const image::Database database(source);
  EXPECT_TRUE(database.HasTable(name));
}

TEST(DatabaseTest, AnUnknownFormatVersionIsNamed) {
  CompoundFileImage image = Write(Sample());
  Header(0x1A, 2, 5)(image);
  MemorySource source = image.Source();
  image::Database database(source);
  database.Verify();
  EXPECT_EQ(database.UnknownKind(), "version 5 of the format of compound files");
}

TEST(DatabaseTest, EveryFailureToReadIsPassedOnAndReadingCanBeRepeated) {
  const CompoundFileImage file = Write(Sample(std::string(70000, 'l')), 12);
  for (unsigned failing = 1;; ++failing) {
    MemorySource source = file.Source();
    source.failingRead = failing;
    std::optional<image::Database> database;
    try {
      database.emplace(source);
      Contents(*database);
      EXPECT_GT(failing, 2U);
      break;
    } catch (const ReadFailure&) {
      if (database) {
        EXPECT_EQ(Contents(*database).size(), 11U);
      }
    }
  }
}

TEST(DatabaseTest, ReadsAModuleThatTheInstallerWrote) {
  std::ifstream stream(QM_SOURCE_DIR "/tests/image/corpus/file/EchoPrint.msm", std::ios::binary);
  MemorySource source(image::Bytes(std::istreambuf_iterator<char>(stream), {}));
  image::Database database(source);
  database.Verify();
  EXPECT_THAT(database.Defects(), testing::IsEmpty());
  const image::TableRows signature = database.ReadTable("ModuleSignature");
  EXPECT_EQ(signature.Text(0, 0), "EchoPrint.9C0310F5_ADFE_4427_8CC5_CC89C0D69A78");
  EXPECT_EQ(signature.Integer(0, 1), 1033);
  EXPECT_EQ(database.ReadTable("Directory").Text(3, 2), "ECHOPR~1|Echo Print");
  EXPECT_EQ(database.ReadSummary()->Text(9), "{CAD53C73-EAA2-45D8-A4CF-2EEF360A739A}");
  EXPECT_THROW(database.ReadTable("Nothing"), image::Damage);
}

}  // namespace

}  // namespace qm::tests
