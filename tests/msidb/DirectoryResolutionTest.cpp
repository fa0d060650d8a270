#include <optional>

#include "com/error/ErrorHandler.h"
#include "common/Path.h"
#include "module/CacheMSM.h"
#include "msidb/DirectoryName.h"
#include "msidb/DirectoryResolution.h"
#include "msidb/InstallerDatabase.h"
#include "msidb/ModuleDirectories.h"
#include "tests/fakes/Imports.h"
#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"
#include "traits/TargetPath.h"

using msidb::DirectoryOptions;
using msidb::DirectoryPaths;
using msidb::TargetDirectories;

namespace {

#define SUFFIX_32 L".0123456789ABCDEF0123456789ABCDEF"
#define SUFFIX_36 L".01234567_89AB_CDEF_0123_456789ABCDEF"

constexpr wchar_t kBin[] = L"Bin" SUFFIX_32;

TEST(DirectoryName, IsOneOfUpToFourOfTheDefaultDir) {
  const struct {
    const wchar_t *defaultDir, *longName, *shortName, *sourceLong, *sourceShort;
  } cases[] = {
      {L"a|b:c|d", L"b", L"a", L"d", L"c"},
      {L"Progra~1|Program Files", L"Program Files", L"Progra~1", L"Program Files", L"Progra~1"},
      {L"plain", L"plain", L"plain", L"plain", L"plain"},
      {L".:x", L".", L".", L"x", L"x"},
      {L"a:b:c", L"a", L"a", L"b:c", L"b:c"},
      {L"a|b|c", L"b|c", L"a", L"b|c", L"a"},
      {L":", L"", L"", L"", L""},
      {L"|", L"", L"", L"", L""},
      {L"a:", L"a", L"a", L"", L""},
      {L"", L"", L"", L"", L""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(std::wstring(c.defaultDir)));
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, false, false), c.longName);
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, false, true), c.shortName);
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, true, false), c.sourceLong);
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, true, true), c.sourceShort);
  }
}

TEST(DirectoryName, SuffixesHaveTheLengthOfAGuid) {
  for (size_t length = 0; length < 40; ++length) {
    EXPECT_EQ(length == 32 || length == 36, msidb::ModuleSuffixMatch(std::wstring(length, L'x')));
  }
  EXPECT_EQ(msidb::StripModuleSuffix(L"INSTALLDIR" SUFFIX_32), L"INSTALLDIR");
  EXPECT_EQ(msidb::StripModuleSuffix(L"a.b" SUFFIX_36), L"a.b");
  EXPECT_EQ(msidb::StripModuleSuffix(L"INSTALLDIR" SUFFIX_32 L"x"), L"INSTALLDIR" SUFFIX_32 L"x");
}

/// Who reads the database of a test.
enum class Reader { Own, Installer };

/// A database with the trees that the tests walk.
class Directories : public ::testing::TestWithParam<Reader> {
 protected:
  void SetUp() override {
    test.Run(
        L"CREATE TABLE `Directory` (`Directory` CHAR(72) NOT NULL, `Directory_Parent` "
        L"CHAR(72), `DefaultDir` LONGCHAR NOT NULL PRIMARY KEY `Directory`)");
    test.Run(
        L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL "
        L"PRIMARY KEY `Property`)");
    const std::initializer_list<CWideString> rows[] = {
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
        {L"Fits", L"TARGETDIR", CWideString(std::wstring(259, L'n'))},
        {L"TooLong", L"TARGETDIR", CWideString(std::wstring(260, L'n'))},
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

  /// The directories as they are at the first call, which ends the writing of the database.
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

  CWideString Resolve(const wchar_t* key, const DirectoryOptions& options) {
    CWideString path;
    EXPECT_EQ(UINT(ERROR_SUCCESS), msidb::ResolveDirectoryPath(Table(), key, path, options));
    return path;
  }

  const CWatchedInstaller m_installer;
  TestDatabase test;

 private:
  std::unique_ptr<msidb::ModuleDatabase> m_database;
  std::optional<msidb::DirectoryTable> m_table;
};

TEST_P(Directories, AreWalkedUpToTheirRoot) {
  const struct {
    const wchar_t *key, *target, *scanned;
  } cases[] = {
      {L"ProgramFilesFolder", L"[ProgramFilesFolder]", L"ProgramFilesFolder"},
      {L"Bin" SUFFIX_32, L"[ProgramFilesFolder]My App\\bin", L"ProgramFilesFolder\\My App\\bin"},
      // A suffixed predefined folder is one only where its own row is there as well.
      {L"BelowSuffixed", L"[ProgramFilesFolder]below", L"ProgramFilesFolder\\below"},
      {L"BelowCommon", L"Common\\below", L"Common\\below"},
      {L"ProgramFiles64Folder", L"Program Files 64", L"Program Files 64"},
      {L"windowsfolder", L"[windowsfolder]", L"windowsfolder"},
      {L"TARGETDIR", L"", L""},
      {L"Anchor", L"C:\\Anchor\\", L"C:\\Anchor\\"},
      {L"BelowAnchor", L"C:\\Anchor\\below", L"C:\\Anchor\\below"},
      {L"BelowAdrift", L"below", L"below"},
      {L"BelowHidden", L"[ProgramFilesFolder]My App\\bin\\below",
       L"ProgramFilesFolder\\My App\\bin\\below"},
      {L"BelowData", L"D:\\Data\\below", L"D:\\Data\\below"},
      {L"BelowElsewhere", L"below", L"below"},
      {L"Round", L"about\\round", L"about\\round"},
      {L"Itself", L"itself", L"itself"},
      {L"Orphan", L"orphan", L"orphan"},
      {L"BelowNameless", L"orphan\\\\below", L"orphan\\\\below"},
      {L"it's", L"quoted", L"quoted"},
      {L"it's a dot", L"", L""},
      {L"x' OR '1'='1", L"", L""},
      {L"No such row", L"", L""},
      {L"", L"", L""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(std::wstring(c.key)));
    EXPECT_EQ(Resolve(c.key, TargetPathOptions()), c.target);
    EXPECT_EQ(Resolve(c.key, msidb::kTableScan), c.scanned);
  }
}

TEST_P(Directories, OtherOptions) {
  const DirectoryOptions plain{};
  DirectoryOptions sourcePath = TargetPathOptions();
  sourcePath.useSourcePart = true;
  DirectoryOptions shortPath = TargetPathOptions();
  shortPath.useShortName = true;
  shortPath.brackets = msidb::ReferenceBrackets{L'<', L'>'};
  EXPECT_EQ(Resolve(L"Bin" SUFFIX_32, sourcePath), L"[ProgramFilesFolder]Application\\bin");
  EXPECT_EQ(Resolve(L"Bin" SUFFIX_32, shortPath), L"<ProgramFilesFolder>MYAPP\\bin");
  EXPECT_EQ(Resolve(L"BelowSuffixed", plain), L"PFiles\\below") << "suffixes are kept";
  EXPECT_EQ(Resolve(L"BelowAnchor", plain), L"Anchor\\below") << "a dot folder goes by its key";
  EXPECT_EQ(Resolve(L"Same", sourcePath), L"[ProgramFilesFolder]Application\\bin\\src");
}

TEST_P(Directories, ChainsOfAThousandDirectories) {
  CWideString expected(L"D0");
  test.Insert(L"Directory", {L"Deep0", L"TARGETDIR", L"D0"});
  for (int i = 1; i < 1000; ++i) {
    const CWideString name = CWideString::Format(L"D%d", i);
    test.Insert(L"Directory",
                {CWideString::Format(L"Deep%d", i), CWideString::Format(L"Deep%d", i - 1), name});
    expected = i < 999 ? JoinPath(expected, name) : expected;
  }
  EXPECT_EQ(Resolve(L"Deep998", TargetPathOptions()), expected);  // with TARGETDIR
  CWideString path;
  EXPECT_EQ(UINT(ERROR_MORE_DATA),
            msidb::ResolveDirectoryPath(Table(), L"Deep999", path, TargetPathOptions()));
}

TEST_P(Directories, NamesThatFitInNoPathAreReturnedAsACode) {
  EXPECT_EQ(259U, Resolve(L"Fits", TargetPathOptions()).length());
  for (const wchar_t* const key : {L"TooLong", L"BelowTooLong"}) {
    CWideString path;
    EXPECT_EQ(UINT(ERROR_MORE_DATA),
              msidb::ResolveDirectoryPath(Table(), key, path, TargetPathOptions()));
    const com_exception failure =
        FailureOf([&] { msidb::RequireDirectoryPath(Table(), key, TargetPathOptions()); });
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_MORE_DATA), failure.hr);
    EXPECT_NE(std::wstring_view::npos, std::wstring_view(failure.description).find(key));
  }
}

TEST_P(Directories, AMissingPropertyTableIsEmpty) {
  test.Run(L"DROP TABLE `Property`");
  EXPECT_EQ(Resolve(L"BelowAnchor", TargetPathOptions()), L"below");
  EXPECT_EQ(Resolve(L"BelowData", TargetPathOptions()), L"below");
}

TEST_P(Directories, AMissingDirectoryTableIsEmpty) {
  test.Run(L"DROP TABLE `Directory`");
  EXPECT_EQ(Resolve(L"BelowAnchor", TargetPathOptions()), L"");
  EXPECT_TRUE(msidb::ResolveAllDirectories(Table()).empty());
}

TEST_P(Directories, AllOfATableAtOnce) {
  test.Run(L"DELETE FROM `Directory` WHERE `Directory` = 'TooLong'");
  const DirectoryPaths paths = msidb::ResolveAllDirectories(Table());
  EXPECT_EQ(32U, paths.size());
  EXPECT_EQ(paths.at(L"Bin" SUFFIX_32), L"ProgramFilesFolder\\My App\\bin");
  EXPECT_EQ(paths.at(L"TARGETDIR"), L"");
}

INSTANTIATE_TEST_SUITE_P(, Directories, ::testing::Values(Reader::Own, Reader::Installer),
                         [](const auto& reader) {
                           return reader.param == Reader::Own ? "ReadHere" : "ReadByTheInstaller";
                         });

/// A module file with a few directories, and what its keys resolve to.
class ModuleDirectories : public Directories {
 protected:
  void SetUp() override {
    Directories::SetUp();
    test.CommitAndClose();
    if (GetParam() == Reader::Installer) {
      MakeUnknownKind(test.path.c_str());
    }
  }

  /// The paths of `keys`; a failure of one is in its place.
  HRESULT Resolve(std::initializer_list<const wchar_t*> keys) {
    directories.clear();
    for (const wchar_t* const key : keys) {
      directories.try_emplace(key);
    }
    return msidb::ResolveModuleDirectories(test.path.c_str(), TargetPathOptions(), directories);
  }

  TargetDirectories directories;
};

TEST_P(ModuleDirectories, AreResolvedOverOneDatabase) {
  installer::Reset();
  EXPECT_EQ(S_OK, Resolve({kBin, L"BelowAnchor", L"BelowTooLong", L"BelowData", L""}));
  EXPECT_EQ(GetParam() == Reader::Own ? 0 : 1, CallCount("MsiOpenDatabaseW"));
  EXPECT_EQ(directories[kBin].path, L"[ProgramFilesFolder]My App\\bin");
  EXPECT_EQ(directories[L"BelowAnchor"].path, L"C:\\Anchor\\below");
  EXPECT_EQ(directories[L"BelowData"].path, L"D:\\Data\\below") << "behind one that fails";
  EXPECT_EQ(directories[L""].path, L"");
  const msidb::TargetDirectory& failed = directories[L"BelowTooLong"];
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_MORE_DATA), failed.result);
  EXPECT_EQ(failed.description, SystemText(failed.result) + L"ResolveDirectoryPath(BelowTooLong)");
}

TEST_P(ModuleDirectories, NeedTheirFile) {
  const CWideString path = CWideString(test.path) + L".gone";
  EXPECT_TRUE(FAILED(msidb::ResolveModuleDirectories(path, TargetPathOptions(), directories)));
  const com_exception failure(E_FAIL);
  EXPECT_NE(std::wstring_view::npos, std::wstring_view(failure.description).find(path));
}

TEST_P(ModuleDirectories, SurviveAShortageOfMemory) {
  // What is made once for all, and room in the log of calls.
  ASSERT_EQ(S_OK, Resolve({L"BelowAnchor", kBin}));
  directories.clear();
  installer::Reset();
  heap::SweepFaults(
      [&] {
        HRESULT hr = RunAtBoundary(GUID_NULL, [&] { return Resolve({kBin}); });
        for (const auto& [key, directory] : directories) {
          hr = FAILED(directory.result) ? directory.result : hr;
        }
        directories.clear();
        installer::Reset();
        return hr;
      },
      [] { ::SetErrorInfo(0, nullptr); });
}

INSTANTIATE_TEST_SUITE_P(, ModuleDirectories, ::testing::Values(Reader::Own, Reader::Installer),
                         [](const auto& reader) {
                           return reader.param == Reader::Own ? "ReadHere" : "ReadByTheInstaller";
                         });

}  // namespace
