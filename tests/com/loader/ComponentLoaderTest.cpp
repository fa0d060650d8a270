#include "com/loader/ComponentLoader.h"

#include <filesystem>

#include "com/frame/DllPath.h"
#include "common/ComPtr.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace fs = std::filesystem;

namespace {

/// A class of the test's component.
constexpr CLSID kSibling = {1, 0x7E57, 0x7E57, {}};

/// The folders around a server that does not exist: <root>/product/server, with sibling.dll
/// wherever a test puts it.
class ComponentLoaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(m_root / "product" / "server");
    m_previous = fs::current_path();
    loader = std::make_unique<com::ComponentLoader>((m_root / "product" / "server").c_str(),
                                                    (m_root / "common").c_str());
  }
  void TearDown() override {
    loader->UnloadIdle();
    EXPECT_EQ(m_previous, fs::current_path());
    fs::current_path(m_previous);
  }

  /// Puts the test's component, or junk, into a folder below the root.
  fs::path Put(const char* folder, bool junk = false) {
    fs::path path = m_root / folder / "sibling.dll";
    fs::create_directories(path.parent_path());
    fs::copy_file(Program().parent_path() / (junk ? "qmmmupdater.tlb" : "sibling.dll"), path);
    return path;
  }

  static fs::path Program() { return com::DllPath(nullptr).c_str(); }

  /// The file that is loaded as sibling.dll; empty if none is loaded.
  static fs::path Loaded() {
    const HMODULE module = ::GetModuleHandleW(L"sibling.dll");
    return module ? fs::path(com::DllPath(module).c_str()) : fs::path();
  }

  com_exception Failure(const CLSID& clsid = kSibling) {
    return FailureOf([&] { loader->Create<IUnknown>(L"sibling.dll", clsid); });
  }

  const TestFolder m_folder;
  const fs::path m_root = m_folder.Path();
  fs::path m_previous;
  std::unique_ptr<com::ComponentLoader> loader;
};

TEST_F(ComponentLoaderTest, LooksInTheServersFolderThenItsSystemThenTheProductsFolder) {
  const fs::path places[] = {Put("product/server"), Put("product/server/System"),
                             Put("common/Quillmark")};
  for (const fs::path& place : places) {
    const auto object = loader->Create<IUnknown>(L"sibling.dll", kSibling);
    EXPECT_TRUE(fs::equivalent(place, Loaded())) << place << " " << Loaded();
    loader->UnloadIdle();
    EXPECT_EQ(Loaded().empty(), false) << "unloaded under a live object";
    const_cast<common::ComPtr<IUnknown>&>(object).Release();
    loader->UnloadIdle();
    EXPECT_EQ(Loaded(), fs::path());
    fs::remove(place);
  }
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), Failure().hr);
}

TEST_F(ComponentLoaderTest, FunctionsAreAlsoLookedForInTheSystemFolderOfTheProduct) {
  // Objects are not looked for there: their last place is the registry.
  const fs::path place = Put("product/System");
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), Failure().hr);
  const auto canUnload = loader->GetFunction<HRESULT(WINAPI*)()>(L"sibling.dll", "DllCanUnloadNow");
  EXPECT_EQ(S_OK, canUnload());
  EXPECT_TRUE(fs::equivalent(place, Loaded()));
}

TEST_F(ComponentLoaderTest, TheSystemFolderSearchBeginsAboveTheServer) {
  Put("product/server/System");
  EXPECT_EQ(loader->FindSystemFolder(L"sibling.dll"), L"");
  Put("System");
  EXPECT_TRUE(fs::equivalent(m_root / "System", loader->FindSystemFolder(L"sibling.dll").c_str()));
  Put("product/System");
  EXPECT_TRUE(fs::equivalent(m_root / "product" / "System",
                             loader->FindSystemFolder(L"sibling.dll").c_str()));
}

TEST_F(ComponentLoaderTest, NothingIsLoadedFromTheCurrentFolderOrThePath) {
  Put("elsewhere");
  const fs::path previous = fs::current_path();
  fs::current_path(m_root / "elsewhere");
  ::SetEnvironmentVariableW(L"PATH", (m_root / "elsewhere").c_str());
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), Failure().hr);
  fs::current_path(previous);
}

TEST_F(ComponentLoaderTest, ANameWithABackslashIsThePathOfTheFile) {
  const fs::path place = Put("elsewhere");
  EXPECT_TRUE(loader->Create<IUnknown>(place.c_str(), kSibling));
}

TEST_F(ComponentLoaderTest, FailuresNameTheDll) {
  const fs::path place = Put("product/server");
  const com_exception unknown = Failure(GUID_NULL);
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, unknown.hr);
  EXPECT_EQ(unknown.description,
            common::WideString(L"sibling.dll: ") + SystemText(CLASS_E_CLASSNOTAVAILABLE));
  const com_exception noExport =
      FailureOf([&] { loader->GetFunction<void (*)()>(L"sibling.dll", "Nonsense"); });
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND), noExport.hr);
  EXPECT_EQ(0U, std::wstring_view(noExport.description).find(L"sibling.dll: "));

  loader->UnloadIdle();
  fs::remove(place);
  Put("product/server", true);
  const com_exception junk = Failure();
  EXPECT_TRUE(FAILED(junk.hr));
  EXPECT_EQ(0U, std::wstring_view(junk.description).find(L"sibling.dll: "));
}

}  // namespace

}  // namespace qm::tests
