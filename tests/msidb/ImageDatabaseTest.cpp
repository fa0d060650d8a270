#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "msidb/CodePageText.h"
#include "msidb/ImageDatabase.h"
#include "msidb/InstallerDatabase.h"
#include "msidb/View.h"
#include "tests/fakes/Imports.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace qm::tests {

// Every value of a database, as it is read here and as the installer reads it.

namespace {

namespace fs = std::filesystem;

std::u16string Utf16(const common::WideString& text) {
  const std::wstring_view view(text);
  return {view.begin(), view.end()};
}

image::Bytes StreamOf(const msidb::Record& record, UINT field) {
  image::Bytes all;
  char part[4096];
  for (DWORD size = sizeof part;; size = sizeof part) {
    static auto* const read = installer::Find<decltype(MsiRecordReadStream)>("MsiRecordReadStream");
    EXPECT_EQ(0U, read(record.Get(), field, part, &size));
    if (size == 0) {
      return all;
    }
    all.insert(all.end(), part, part + size);
  }
}

/// Compares the two readers of one file.
class BothReaders {
 public:
  explicit BothReaders(const fs::path& path)
      : m_path(path.c_str()),
        m_file(m_path),
        m_image(m_file),
        m_own(m_path),
        m_installers(m_path),
        m_database(msidb::Database::OpenReadOnly(m_path)) {}

  /// Returns the number of tables.
  size_t Compare() {
    std::vector<common::WideString> tables;
    for (const std::string_view name : m_image.TableNames()) {
      tables.push_back(Decode(name));
    }
    std::vector<common::WideString> installers;
    msidb::View view;
    for (view.OpenTable(m_database, L"_Tables"); view.Next();) {
      installers.push_back(view.Row().GetString(1));
    }
    EXPECT_EQ(tables, installers);
    EXPECT_FALSE(m_own.HasTable(L"Missing"));
    EXPECT_FALSE(m_installers.HasTable(L"Missing"));
    EXPECT_EQ(FailureOf([&] { m_own.ReadTable(L"Missing", nullptr); }).hr,
              FailureOf([&] { m_installers.ReadTable(L"Missing", nullptr); }).hr);
    for (const std::string_view name : m_image.TableNames()) {
      SCOPED_TRACE(std::string(name));
      CompareTable(m_image.ReadTable(name));
    }
    CompareSummary();
    return tables.size();
  }

 private:
  common::WideString Decode(std::string_view bytes) const {
    return msidb::DecodeCodePageText(bytes, m_image.Strings().CodePage());
  }

  void CompareTable(const image::TableRows& rows) {
    const common::WideString name = Decode(rows.Definition().name);
    EXPECT_TRUE(m_own.HasTable(name.c_str()));
    EXPECT_TRUE(m_installers.HasTable(name.c_str()));
    CompareRows(name, nullptr, rows);
    for (const image::Column& column : rows.Definition().columns) {
      if (column.kind == image::ColumnKind::Integer) {
        const common::WideString orderBy = Decode(column.name);
        CompareRows(name, orderBy.c_str(), rows);
      }
    }
    CompareData(name, rows);
  }

  void CompareRows(const common::WideString& table, const wchar_t* orderBy,
                   const image::TableRows& rows) {
    const auto own = m_own.ReadTable(table.c_str(), orderBy);
    const auto installers = m_installers.ReadTable(table.c_str(), orderBy);
    size_t row = 0;
    for (; own->Next(); ++row) {
      ASSERT_TRUE(installers->Next()) << "row " << row;
      ASSERT_EQ(own->FieldCount(), installers->FieldCount());
      for (UINT field = 1; field <= own->FieldCount() + 1; ++field) {
        const bool isData = field <= own->FieldCount() &&
                            rows.Definition().columns[field - 1].kind == image::ColumnKind::Stream;
        if (!isData && !IsMisread(own->GetInteger(field), installers->GetInteger(field))) {
          ASSERT_EQ(own->GetString(field), installers->GetString(field)) << row << ' ' << field;
          ASSERT_EQ(own->GetInteger(field), installers->GetInteger(field)) << row << ' ' << field;
        }
      }
    }
    EXPECT_FALSE(installers->Next());
    EXPECT_EQ(row, rows.Count());
  }

  /// Some installers read numbers of one byte, which are stored in two, as if they were of four.
  static bool IsMisread(int own, int installers) noexcept {
    return own >= -0x8000 && own < 0x8000 && installers == own + 0x8000 + INT_MIN;
  }

  /// Null cells, and the data of rows.
  void CompareData(const common::WideString& table, const image::TableRows& rows) {
    msidb::View view;
    view.OpenTable(m_database, table);
    for (size_t row = 0; row < rows.Count(); ++row) {
      ASSERT_TRUE(view.Next());
      for (size_t column = 0; column < rows.Definition().columns.size(); ++column) {
        const UINT field = static_cast<UINT>(column + 1);
        ASSERT_EQ(rows.IsNull(row, column), view.Row().IsNull(field)) << row << ' ' << field;
        if (rows.Definition().columns[column].kind == image::ColumnKind::Stream) {
          const auto own = m_image.ReadStream(
              rows, row, column, [&](std::string_view bytes) { return Utf16(Decode(bytes)); });
          ASSERT_EQ(own.has_value(), !view.Row().IsNull(field)) << row;
          ASSERT_TRUE(!own || *own == StreamOf(view.Row(), field)) << row;
        }
      }
    }
  }

  void CompareSummary() {
    const auto summary = m_image.ReadSummary();
    for (UINT property = 2; property <= 18; ++property) {
      const auto bytes = summary ? summary->Text(property) : std::nullopt;
      // Not every installer heeds the code page of the summary: some take the system's.
      const bool isSameEverywhere =
          !bytes || summary->CodePage() == ::GetACP() ||
          std::all_of(bytes->begin(), bytes->end(), [](char byte) { return byte > 0; });
      if (isSameEverywhere) {
        EXPECT_EQ(m_own.ReadSummaryString(property), m_installers.ReadSummaryString(property))
            << property;
      }
    }
  }

  common::WideString m_path;
  msidb::ModuleFile m_file;
  image::Database m_image;
  msidb::ImageDatabase m_own;
  msidb::InstallerDatabase m_installers;
  msidb::Database m_database;
};

void CompareFile(const fs::path& path) {
  SCOPED_TRACE(path.u8string());
  const com_exception failure = FailureOf([&] { EXPECT_LT(0U, BothReaders(path).Compare()); });
  EXPECT_EQ(S_OK, failure.hr) << testing::PrintToString(failure.description);
}

// ---- Databases made for these tests

/// Bytes without a pattern that sectors share.
image::Bytes DataOf(size_t size) {
  image::Bytes bytes(size);
  std::uint32_t number = 1;
  for (std::uint8_t& byte : bytes) {
    number = number * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(number >> 24U);
  }
  return bytes;
}

/// Texts, numbers and data of all kinds; `texts` are in the code page.
DatabaseImage MakeDatabase(unsigned codePage, const std::vector<std::string>& texts) {
  TableImage textTable{"Texts", {{"Key", kText | kKey}, {"Text", kText | kNullable}}, {}};
  std::int32_t number = 0;
  for (const std::string& text : texts) {
    textTable.rows.push_back({"Key" + std::to_string(++number), text});
  }
  textTable.rows.push_back({"Null", nullptr});
  for (const char* const text : {"12", "-7", "007", "2147483647", "2147483648", "-2147483647",
                                 "-2147483648", "1x", " 1", "+1"}) {
    textTable.rows.push_back({std::string("Number ") + text, text});
  }
  return {{std::move(textTable),
           {"Numbers",
            {{"Key", kShort | kKey}, {"Short", kShort | kNullable}, {"Long", kLong | kNullable}},
            {{1, 5, 2147483647},
             {2, nullptr, nullptr},
             {3, -32767, -2147483647},
             {4, 32767, 0},
             {5, 0, -1},
             {6, 5, 65536},
             {7, -1, nullptr}}},
           {"Empty", {{"Key", kText | kKey}, {"Number", kShort}}, {}},
           {"ModuleSignature", {{"ModuleID", kText | kKey}}, {{texts.front()}}},
           {"Binary",
            {{"Name", kText | kKey}, {"Number", kLong | kKey}, {"Data", kData | kNullable}},
            {{"Small", 1, 1}, {"Large", -70000, 1}, {"None", 3, nullptr}}}},
          {{RowStream(u"Binary.Small.1"), DataOf(100)},
           {RowStream(u"Binary.Large.-70000"), DataOf(9000)},
           WriteSummary(codePage, {{2, "Title"}, {3, texts.front()}, {4, ""}, {9, "{1}"}})},
          codePage};
}

DatabaseImage MakeDatabaseOfManyStrings() {
  DatabaseImage database = MakeDatabase(1252, {"many"});
  database.referenceSize = 3;
  TableImage table{"Many", {{"Key", kLong | kKey}}, {}};
  constexpr std::int32_t kColumns = 20;
  for (std::int32_t column = 0; column < kColumns; ++column) {
    table.columns.emplace_back("Text" + std::to_string(column), kText);
  }
  for (std::int32_t row = 0; row < 70000 / kColumns; ++row) {
    std::vector<Cell> cells{-row};
    for (std::int32_t column = 0; column < kColumns; ++column) {
      cells.push_back(std::to_string(row) + "." + std::to_string(column));
    }
    table.rows.push_back(std::move(cells));
  }
  database.tables.push_back(std::move(table));
  return database;
}

DatabaseImage MakeLargeDatabase() {
  DatabaseImage database = MakeDatabase(1252, {"large"});
  database.tables.back().rows.push_back({"Cabinet", 4, 1});
  database.streams.push_back({RowStream(u"Binary.Cabinet.4"), DataOf(7'500'000)});
  return database;
}

void WriteFile(const fs::path& path, CompoundFileImage file) {
  // The class of installer databases: the installer opens no others.
  const size_t classId = file.Sector(file.directory) + 0x50;
  file.Put(classId, 4, 0x000C1084);
  file.Put(classId + 8, 4, 0x000000C0);
  file.Put(classId + 12, 4, 0x46000000);
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(file.bytes.data()),
             static_cast<std::streamsize>(file.bytes.size()));
}

TEST(ImageDatabaseTest, ReadsEveryKindOfDatabaseAsTheInstallerDoes) {
  const struct {
    const char* name;
    DatabaseImage database;
    unsigned sectorShift;
  } cases[] = {
      {"system's code page",
       MakeDatabase(0, {"Gr\xF6\xDF"
                        "e \x80 \x81",
                        "plain"}),
       9},
      {"code page 1252",
       MakeDatabase(1252, {"Gr\xF6\xDF"
                           "e \x80 \x81",
                           "plain"}),
       9},
      {"code page 932", MakeDatabase(932, {"\x93\xFA\x96\x7B\x95\x5C \xB1", "plain", "\x93"}), 9},
      {"code page 65001",
       MakeDatabase(65001, {"\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80", "\xFF\xC3", "plain"}), 9},
      {"long text",
       MakeDatabase(1252, {std::string(70000, 'x'), std::string(65535, 'y'),
                           std::string(65536, 'z'), "behind them"}),
       9},
      {"sectors of 4,096 bytes", MakeDatabase(1252, {"plain"}), 12},
      {"many strings", MakeDatabaseOfManyStrings(), 9},
      {"large", MakeLargeDatabase(), 9},
  };
  const TestFolder folder;
  const fs::path path(folder / L"module.msm");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    WriteFile(path, WriteCompoundFile(WriteDatabase(c.database), c.sectorShift));
    CompareFile(path);
  }
}

TEST(ImageDatabaseTest, RefusesTextsThatTheSystemCannotDecode) {
  const TestFolder folder;
  const fs::path path(folder / L"module.msm");
  WriteFile(path, WriteCompoundFile(WriteDatabase(MakeDatabase(9999, {"plain"}))));
  const WatchedInstaller installer;
  const com_exception failure = FailureOf([&] { msidb::ModuleDatabase::Open(path.c_str()); });
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_OPEN_FAILED), failure.hr);
  EXPECT_EQ(failure.description,
            common::WideString(L"The texts are in code page 9999, which this system does not have. "
                               L"MsiOpenDatabase(") +
                path.c_str() + L")");
  EXPECT_EQ(0, CallCount("MsiOpenDatabaseW"));
}

TEST(ImageDatabaseTest, DoesNotHandASuspiciousFileToTheInstaller) {
  auto file = WriteCompoundFile(WriteDatabase(MakeDatabase(1252, {"plain"})));
  file.Put(0x1A, 2, 5);  // a version that the reader does not know
  file.Put(file.Entry(TableStream("Numbers")) + 2, 2, 0);
  const TestFolder folder;
  const fs::path path(folder / L"module.msm");
  WriteFile(path, std::move(file));
  const WatchedInstaller installer;
  const com_exception failure = FailureOf([&] { msidb::ModuleDatabase::Open(path.c_str()); });
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), failure.hr);
  EXPECT_EQ(failure.description,
            common::WideString(L"The tree of the directory is not in order. MsiOpenDatabase(") +
                path.c_str() + L")");
  EXPECT_EQ(0, CallCount("MsiOpenDatabaseW"));
}

TEST(ImageDatabaseTest, RefusesRowsWhoseTextsWouldFillTheMemory) {
  std::vector<Stream> streams =
      WriteDatabase({{{"T", {{"Key", kText | kKey}}, {{std::string(60000, 'x')}}}}, {}});
  constexpr size_t kRows = 2000;
  for (Stream& stream : streams) {
    if (stream.name == TableStream("T")) {
      const image::Bytes row = stream.bytes;
      for (size_t i = 1; i < kRows; ++i) {
        stream.bytes.insert(stream.bytes.end(), row.begin(), row.end());
      }
    }
  }
  const TestFolder folder;
  const fs::path path(folder / L"module.msm");
  WriteFile(path, WriteCompoundFile(std::move(streams)));
  const msidb::ImageDatabase database(path.c_str());
  const auto rows = database.ReadTable(L"T", nullptr);
  const com_exception failure = FailureOf([&] {
    while (rows->Next()) {
      EXPECT_EQ(60000U, rows->GetString(1).length());
    }
  });
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), failure.hr);
  EXPECT_EQ(failure.description,
            common::WideString(path.c_str()) +
                L": The rows of table \"T\" have more than 67108864 bytes of text. MsiViewFetch()");
}

/// The module files below a folder.
std::vector<fs::path> ModulesBelow(const fs::path& folder) {
  std::vector<fs::path> modules;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".msm") {
      modules.push_back(entry.path());
    }
  }
  return modules;
}

TEST(ImageDatabaseTest, ReadsTheSamplesAsTheInstallerDoes) {
  const std::vector<fs::path> modules = ModulesBelow(ProgramFolder().parent_path() / "samples");
  EXPECT_LT(15U, modules.size());
  for (const fs::path& module : modules) {
    CompareFile(module);
  }
}

TEST(ImageDatabaseTest, ReadsModulesOfOtherToolsAsTheInstallerDoes) {
  const fs::path source = ProgramFolder().parent_path().parent_path().parent_path();
  const fs::path folder = source.parent_path() / "shared" / "modules";
  if (!fs::exists(folder)) {
    std::cout << "left out: there are no modules of other tools beside the checkout\n";
    return;
  }
  for (const fs::path& module : ModulesBelow(folder)) {
    const bool isDatabase = module.filename() != "MergeModule.msm";
    if (isDatabase) {
      CompareFile(module);
    } else {
      EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT),
                FailureOf([&] { msidb::ImageDatabase(module.c_str()); }).hr);
    }
  }
}

}  // namespace

}  // namespace qm::tests
