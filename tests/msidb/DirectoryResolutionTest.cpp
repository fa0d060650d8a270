#include "msidb/DirectoryResolution.h"

#include "common/Path.h"
#include "tests/support/DirectoriesFixture.h"
#include "traits/TargetPath.h"

namespace qm::tests {

namespace {

using DirectoryResolutionTest = DirectoriesFixture;

TEST_P(DirectoryResolutionTest, DirectoriesAreFollowedUpToTheirRoot) {
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
    EXPECT_EQ(Resolve(c.key, traits::MakeTargetPathOptions()), c.target);
    EXPECT_EQ(Resolve(c.key, msidb::kTableScanOptions), c.scanned);
  }
}

TEST_P(DirectoryResolutionTest, OptionsChooseNamesAndBrackets) {
  const msidb::DirectoryOptions plain{};
  msidb::DirectoryOptions sourcePath = traits::MakeTargetPathOptions();
  sourcePath.useSourcePart = true;
  msidb::DirectoryOptions shortPath = traits::MakeTargetPathOptions();
  shortPath.useShortName = true;
  shortPath.brackets = msidb::ReferenceBrackets{L'<', L'>'};
  EXPECT_EQ(Resolve(L"Bin" SUFFIX_32, sourcePath), L"[ProgramFilesFolder]Application\\bin");
  EXPECT_EQ(Resolve(L"Bin" SUFFIX_32, shortPath), L"<ProgramFilesFolder>MYAPP\\bin");
  EXPECT_EQ(Resolve(L"BelowSuffixed", plain), L"PFiles\\below") << "suffixes are kept";
  EXPECT_EQ(Resolve(L"BelowAnchor", plain), L"Anchor\\below") << "a dot folder goes by its key";
  EXPECT_EQ(Resolve(L"Same", sourcePath), L"[ProgramFilesFolder]Application\\bin\\src");
}

TEST_P(DirectoryResolutionTest, AChainMayHaveAThousandDirectories) {
  common::WideString expected(L"D0");
  test.Insert(L"Directory", {L"Deep0", L"TARGETDIR", L"D0"});
  for (int i = 1; i < 1000; ++i) {
    const common::WideString name = common::WideString::Format(L"D%d", i);
    test.Insert(L"Directory", {common::WideString::Format(L"Deep%d", i),
                               common::WideString::Format(L"Deep%d", i - 1), name});
    expected = i < 999 ? common::JoinPath(expected, name) : expected;
  }
  EXPECT_EQ(Resolve(L"Deep998", traits::MakeTargetPathOptions()), expected);  // with TARGETDIR
  common::WideString path;
  EXPECT_EQ(UINT(ERROR_MORE_DATA), msidb::ResolveDirectoryPath(Table(), L"Deep999", path,
                                                               traits::MakeTargetPathOptions()));
}

TEST_P(DirectoryResolutionTest, ANameThatFitsInNoPathIsAFailure) {
  EXPECT_EQ(259U, Resolve(L"Fits", traits::MakeTargetPathOptions()).length());
  for (const wchar_t* const key : {L"TooLong", L"BelowTooLong"}) {
    common::WideString path;
    EXPECT_EQ(UINT(ERROR_MORE_DATA),
              msidb::ResolveDirectoryPath(Table(), key, path, traits::MakeTargetPathOptions()));
    const com_exception failure = FailureOf(
        [&] { msidb::ResolveDirectoryPathOrRaise(Table(), key, traits::MakeTargetPathOptions()); });
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_MORE_DATA), failure.hr);
    EXPECT_NE(std::wstring_view::npos, std::wstring_view(failure.description).find(key));
  }
}

TEST_P(DirectoryResolutionTest, AMissingPropertyTableIsEmpty) {
  test.Run(L"DROP TABLE `Property`");
  EXPECT_EQ(Resolve(L"BelowAnchor", traits::MakeTargetPathOptions()), L"below");
  EXPECT_EQ(Resolve(L"BelowData", traits::MakeTargetPathOptions()), L"below");
}

TEST_P(DirectoryResolutionTest, AMissingDirectoryTableIsEmpty) {
  test.Run(L"DROP TABLE `Directory`");
  EXPECT_EQ(Resolve(L"BelowAnchor", traits::MakeTargetPathOptions()), L"");
  EXPECT_TRUE(msidb::ResolveAllDirectories(Table()).empty());
}

TEST_P(DirectoryResolutionTest, AllDirectoriesAreResolvedAtOnce) {
  test.Run(L"DELETE FROM `Directory` WHERE `Directory` = 'TooLong'");
  const msidb::DirectoryPaths paths = msidb::ResolveAllDirectories(Table());
  EXPECT_EQ(32U, paths.size());
  EXPECT_EQ(paths.at(L"Bin" SUFFIX_32), L"ProgramFilesFolder\\My App\\bin");
  EXPECT_EQ(paths.at(L"TARGETDIR"), L"");
}

INSTANTIATE_FOR_BOTH_READERS(DirectoryResolutionTest);

}  // namespace

}  // namespace qm::tests
