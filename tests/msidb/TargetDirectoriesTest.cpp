#include "msidb/TargetDirectories.h"

#include "com/error/ErrorHandler.h"
#include "tests/support/DirectoriesFixture.h"
#include "tests/support/UnknownKind.h"
#include "traits/TargetPath.h"

namespace qm::tests {

namespace {

constexpr wchar_t kBin[] = L"Bin" SUFFIX_32;

/// A module file with a few directories, and what its keys resolve to.
class ModuleDirectoriesTest : public DirectoriesFixture {
 protected:
  void SetUp() override {
    DirectoriesFixture::SetUp();
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
    return msidb::ResolveTargetDirectories(test.path.c_str(), traits::MakeTargetPathOptions(),
                                           directories);
  }

  msidb::TargetDirectoryMap directories;
};

TEST_P(ModuleDirectoriesTest, AllKeysAreResolvedOverOneDatabase) {
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

TEST_P(ModuleDirectoriesTest, AMissingFileFailsWithItsPath) {
  const common::WideString path = common::WideString(test.path) + L".gone";
  EXPECT_TRUE(
      FAILED(msidb::ResolveTargetDirectories(path, traits::MakeTargetPathOptions(), directories)));
  const com_exception failure(E_FAIL);
  EXPECT_NE(std::wstring_view::npos, std::wstring_view(failure.description).find(path));
}

TEST_P(ModuleDirectoriesTest, AShortageOfMemoryIsReported) {
  // Creates what is created only once, and reserves memory for the log of calls.
  ASSERT_EQ(S_OK, Resolve({L"BelowAnchor", kBin}));
  directories.clear();
  installer::Reset();
  heap::SweepFaults(
      [&] {
        HRESULT hr = com::RunAtBoundary(GUID_NULL, [&] { return Resolve({kBin}); });
        for (const auto& [key, directory] : directories) {
          hr = FAILED(directory.result) ? directory.result : hr;
        }
        directories.clear();
        installer::Reset();
        return hr;
      },
      [] { ::SetErrorInfo(0, nullptr); });
}

INSTANTIATE_FOR_BOTH_READERS(ModuleDirectoriesTest);

}  // namespace

}  // namespace qm::tests
