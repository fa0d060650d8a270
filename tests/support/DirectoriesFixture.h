#pragma once

#include <memory>
#include <optional>

#include "msidb/DirectoryResolution.h"
#include "msidb/InstallerDatabase.h"
#include "tests/fakes/Imports.h"
#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"

namespace qm::tests {

#define SUFFIX_32 L".0123456789ABCDEF0123456789ABCDEF"
#define SUFFIX_36 L".01234567_89AB_CDEF_0123_456789ABCDEF"

/// Who reads the database of a test.
enum class Reader { Own, Installer };

/// A database with the trees that the tests walk.
class DirectoriesFixture : public ::testing::TestWithParam<Reader> {
 protected:
  void SetUp() override {
    test.Run(
        L"CREATE TABLE `Directory` (`Directory` CHAR(72) NOT NULL, `Directory_Parent` "
        L"CHAR(72), `DefaultDir` LONGCHAR NOT NULL PRIMARY KEY `Directory`)");
    test.Run(
        L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL "
        L"PRIMARY KEY `Property`)");
    const std::initializer_list<common::WideString> rows[] = {
        {L"TARGETDIR", L"", L"SourceDir"},
        {L"ProgramFilesFolder", L"TARGETDIR", L"."},
        {L"INSTALLDIR" SUFFIX_32, L"ProgramFilesFolder", L"MYAPP|My App:app|Application"},
        {L"Bin" SUFFIX_32, L"INSTALLDIR" SUFFIX_32, L"bin"},
        {L"ProgramFilesFolder" SUFFIX_36, L"TARGETDIR", L"PFiles"},
        {L"BelowSuffixed", L"ProgramFilesFolder" SUFFIX_36, L"below"},
        {L"CommonFilesFolder" SUFFIX_36, L"TARGETDIR", L"Common"},
        {L"BelowCommon", L"CommonFilesFolder" SUFFIX_36, L"below"},
        {L"ProgramFiles64Folder", L"TARGETDIR", L"Prog64~1|Program Files 64"},
        {L"windowsfolder", L"TARGETDIR", L"Win"},
        {L"Anchor", L"TARGETDIR", L"."},
        {L"BelowAnchor", L"Anchor", L"below"},
        {L"Adrift", L"TARGETDIR", L"."},
        {L"BelowAdrift", L"Adrift", L"below"},
        {L"Same", L"Bin" SUFFIX_32, L".:src"},
        {L"Hidden", L"Same", L".config"},
        {L"BelowHidden", L"Hidden", L"below"},
        {L"Data", L"", L"SOURCEDIR"},
        {L"BelowData", L"Data", L"below"},
        {L"Elsewhere", L"", L"SourceDir"},
        {L"BelowElsewhere", L"Elsewhere", L"below"},
        {L"Round", L"About", L"round"},
        {L"About", L"Round", L"about"},
        {L"Itself", L"Itself", L"itself"},
        {L"Orphan", L"Gone", L"orphan"},
        {L"Nameless", L"Orphan", L"|"},
        {L"BelowNameless", L"Nameless", L"below"},
        {L"it's", L"TARGETDIR", L"quoted"},
        {L"it's a dot", L"TARGETDIR", L"."},
        {L"x' OR '1'='1", L"TARGETDIR", L"."},
        {L"Fits", L"TARGETDIR", common::WideString(std::wstring(259, L'n'))},
        {L"TooLong", L"TARGETDIR", common::WideString(std::wstring(260, L'n'))},
        {L"BelowTooLong", L"TooLong", L"below"},
    };
    for (const auto& row : rows) {
      test.Insert(L"Directory", row);
    }
    test.Insert(L"Property", {L"Anchor", L"C:\\Anchor\\"});
    test.Insert(L"Property", {L"Data", L"D:\\Data"});
  }
  void TearDown() override {
    m_table.reset();
    m_database.reset();
    installer::Reset();
    const UINT own = test.database.Get() ? 1 : 0;
    EXPECT_EQ(own, installer::CloseAllHandles()) << "all but the test's own database";
  }

  /// The directories of the database. The first call closes the database for writing.
  const msidb::DirectoryTable& Table() {
    if (!m_table) {
      test.CommitAndClose();
      m_database = GetParam() == Reader::Own
                       ? msidb::ModuleDatabase::Open(test.path.c_str())
                       : std::make_unique<msidb::InstallerDatabase>(test.path.c_str());
      m_table.emplace(*m_database);
    }
    return *m_table;
  }

  common::WideString Resolve(const wchar_t* key, const msidb::DirectoryOptions& options) {
    common::WideString path;
    EXPECT_EQ(UINT(ERROR_SUCCESS), msidb::ResolveDirectoryPath(Table(), key, path, options));
    return path;
  }

  const WatchedInstaller m_installer;
  TestDatabase test;

 private:
  std::unique_ptr<msidb::ModuleDatabase> m_database;
  std::optional<msidb::DirectoryTable> m_table;
};

/// Runs the suite twice: the database is read by the server's own reader, then by the installer.
#define INSTANTIATE_FOR_BOTH_READERS(suite)                                                \
  INSTANTIATE_TEST_SUITE_P(                                                                \
      , suite, ::testing::Values(Reader::Own, Reader::Installer), [](const auto& reader) { \
        return reader.param == Reader::Own ? "ReadHere" : "ReadByTheInstaller";            \
      })

}  // namespace qm::tests
