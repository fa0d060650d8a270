#include <filesystem>
#include <fstream>
#include <sstream>

#include "common/Bstr.h"
#include "common/Path.h"
#include "common/SearchPath.h"
#include "gallery/CompareVersions.h"
#include "gallery/IniIndexes.h"
#include "module/CacheMSM.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace fs = std::filesystem;

namespace {

TEST(CompareVersions, Table) {
  struct Case {
    const wchar_t* a;
    const wchar_t* b;
    int result;
  } const cases[] = {
      {L"1.2", L"1.2.0.0", 0},       {L"2.0", L"1.9.9.9", 1},    {L"1.10", L"1.9", 1},
      {L"0.2", L"0.1.9", 1},         {L"0.0.2", L"0.0.1.9", 1},  {L"0.0.0.1", L"", 1},
      {L"1.0.1", L"1.0.0.65535", 1}, {L"40000", L"30000", 1},    {L"0.0.40000", L"0.0.30000", 1},
      {L"65536", L"0", 0},           {L"1.65537", L"1.1", 0},    {L"1.2.3.5", L"1.2.3.4.9", 1},
      {L"1.2.3.4.5", L"1.2.3.4", 0}, {L"", L"0.0", 0},           {L"beta", L"", 0},
      {L"1.x.3", L"1.0.3", 0},       {L"1.2rc9.3", L"1.2.3", 0}, {L"1..2", L"1.0.2", 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.result, CompareVersions(c.a, c.b)) << c.a << " against " << c.b;
    EXPECT_EQ(-c.result, CompareVersions(c.b, c.a)) << c.b << " against " << c.a;
  }
}

TEST(SearchFolders, EntriesBecomeFullPaths) {
  using List = std::vector<CWideString>;
  ::SetEnvironmentVariableW(L"QM_TEST_FOLDER", L"C:\\x, y");
  ::SetEnvironmentVariableW(L"QM_TEST_EMPTY", L"");
  struct Case {
    const wchar_t* path;
    List entries;
    List folders;
  } const cases[] = {
      {L" ,\t, ", {}, {}},
      {L",\tb , a c,,b", {L"b", L"a c", L"b"}, {FullPath(L"b"), FullPath(L"a c"), FullPath(L"b")}},
      {L"Q:\\a;b,Q:/c/", {L"Q:\\a;b", L"Q:/c/"}, {L"Q:\\a;b", L"Q:\\c"}},
      {L"%QM_TEST_FOLDER%\\z,Q:\\", {L"%QM_TEST_FOLDER%\\z", L"Q:\\"}, {L"C:\\x, y\\z", L"Q:\\"}},
      {L"%QM_TEST_EMPTY%,100%", {L"%QM_TEST_EMPTY%", L"100%"}, {FullPath(L"100%")}},
      {LR"(\\,//,\\?\,\\?\Q:\a,\\?\Q:\)",
       {LR"(\\)", L"//", LR"(\\?\)", LR"(\\?\Q:\a)", LR"(\\?\Q:\)"},
       {L"Q:\\a", L"Q:\\"}},
      {LR"(\\?\unc\s\h\a\,\\?\Volume{1}\a)",
       {LR"(\\?\unc\s\h\a\)", LR"(\\?\Volume{1}\a)"},
       {LR"(\\s\h\a)", LR"(\\?\Volume{1}\a)"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.entries, SplitCommaList(c.path)) << c.path;
    EXPECT_EQ(c.folders, ExpandSearchPath(c.path)) << c.path;
  }
}

// ---- A record

/// A gallery in a folder of its own, which is the gallery root as well; modules are searched for in
/// its folders "one" and "two".
class Gallery : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(m_root / "ObjectGallery");
    ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", m_root.c_str());
    const std::wstring searchPath = (m_root / "one").wstring() + L", " + (m_root / "two").wstring();
    ::SetEnvironmentVariableW(L"QM_MODULE_PATH", searchPath.c_str());
  }
  void TearDown() override { fs::current_path(m_previous); }

  void Put(const fs::path& file, std::string_view bytes) {
    fs::create_directories((m_root / file).parent_path());
    std::ofstream stream(m_root / file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

  /// Puts the description of the module "lamp".
  void Describe(std::string_view text) { Put(m_lamp, text); }
  void DescribeInUtf16(std::wstring_view text) {
    Put(m_lamp, {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)});
  }

  /// What the three questions answer, as "present, needs download: one", with the folder of the
  /// local path.
  std::wstring StateOf(CMMGallery& record) {
    VARIANT_BOOL present = 7;
    VARIANT_BOOL needsDownload = 7;
    CUniqueBstr text;
    EXPECT_EQ(S_OK, record.GetPresent(&present));
    EXPECT_EQ(S_OK, record.GetNeedsDownload(&needsDownload));
    EXPECT_EQ(S_OK, record.GetLocalPath(text.Put()));
    const fs::path path(text.Get());
    EXPECT_TRUE(path.empty() || path == m_root / path.parent_path().filename() / "lamp.msm")
        << path;
    const auto is = [](VARIANT_BOOL flag, const wchar_t* yes, const wchar_t* no) {
      return std::wstring(flag == VARIANT_TRUE ? yes : flag == VARIANT_FALSE ? no : L"?");
    };
    return is(present, L"present", L"absent") + is(needsDownload, L", needs download", L"") +
           (path.empty() ? L"" : L": " + path.parent_path().filename().wstring());
  }

  const CTestFolder m_folder;
  const fs::path m_root = fs::path(m_folder / L"x").parent_path();
  const fs::path m_previous = fs::current_path();
  const fs::path m_lamp = fs::path("ObjectGallery") / "lamp.ini";
};

struct Lamp : CMMGallery {
  explicit Lamp(const wchar_t* version = L"") { SetNameAndVersion(L"lamp", version); }
};

const std::string kLamp =
    "[MergeModule]\nFileName=lamp.msm\nVersion=2.0\n[lamp.msm]\nLocation=anything\n";
const std::string kTwoDownloads =
    kLamp + "[DownloadFiles]\nKey1=first\nKey3=third\n[first]\nLocation=d\\1.bin\n" +
    "[third]\nLocation=\\d\\3.bin\n";

TEST_F(Gallery, PresenceByDescriptionAndFiles) {
  const std::string unlocated = "[MergeModule]\nFileName=lamp.msm\nVersion=2.0\n";
  const std::string unnamed = "[MergeModule]\nVersion=2\n[lamp.msm]\nLocation=x";
  struct Case {
    const char* what;
    std::string ini;
    const char* files;  ///< "1" and "2" are the module file in its search folders
    const wchar_t* version;
    const wchar_t* state;
  } const cases[] = {
      {"empty", "", "1", L"", L"present"},
      {"a lone bracket", "[", "1", L"", L"present"},
      {"no FileName", unnamed, "1", L"", L"present"},
      {"the same version", kLamp, "1", L"2.0.0.0", L"present: one"},
      {"an older one in the gallery", kLamp, "1", L"2.0.1", L"present: one"},
      {"a newer one", kLamp, "1", L"1.9.9.9", L"present, needs download: one"},
      {"any is newer than none", kLamp, "1", L"", L"present, needs download: one"},
      {"empty Location", unlocated + "[lamp.msm]\nLocation=\n", "1", L"1.0", L"absent"},
      {"no Location", unlocated, "1", L"1.0", L"absent"},
      {"no module file", kLamp, "lamp.msm ObjectGallery/lamp.msm", L"1.0", L"absent"},
      {"the second folder", kLamp, "2", L"2.0", L"present: two"},
      {"both folders", kLamp, "2 1", L"2.0", L"present: one"},
      {"downloads there", kTwoDownloads, "1 d/1.bin d/3.bin", L"2.0", L"present: one"},
      {"downloads below the gallery", kTwoDownloads, "1 d/1.bin ObjectGallery/d/3.bin", L"2.0",
       L"present: one"},
      {"first download missing", kTwoDownloads, "1 d/3.bin", L"2.0",
       L"absent, needs download: one"},
      {"last one missing", kTwoDownloads, "1 d/1.bin one/d/3.bin", L"2.0",
       L"absent, needs download: one"},
      {"there, newer", kTwoDownloads, "1 d/1.bin d/3.bin", L"1", L"present, needs download: one"},
      {"keys of any name count", kLamp + "[DownloadFiles]\nother=x\n[x]\nLocation=d\\1.bin", "1",
       L"2.0", L"absent, needs download: one"},
      {"without Location", kLamp + "[DownloadFiles]\nKey1=x\n", "1", L"2.0", L"present: one"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    for (const fs::directory_entry& entry : fs::directory_iterator(m_root)) {
      fs::remove_all(entry);
    }
    Describe(c.ini);
    std::istringstream files(c.files);
    for (std::string file; files >> file;) {
      Put(file == "1" ? "one/lamp.msm" : file == "2" ? "two/lamp.msm" : file, "x");
    }
    Lamp record(c.version);
    EXPECT_EQ(c.state, StateOf(record));
  }
}

TEST_F(Gallery, PresenceIsFixedAtTheFirstQuestion) {
  Describe(kLamp);
  Put("one/lamp.msm", "x");
  Lamp record(L"2.0");
  EXPECT_EQ(L"present: one", StateOf(record));
  fs::remove_all(m_root / "one");
  EXPECT_EQ(L"present: one", StateOf(record));
  Lamp other(L"2.0");
  EXPECT_EQ(L"absent", StateOf(other));
  Put("two/lamp.msm", "x");
  EXPECT_EQ(L"absent", StateOf(other));
  EXPECT_EQ(other.ResolveLocalPath(), (m_root / "two" / "lamp.msm").c_str()) << "looks each time";
}

TEST_F(Gallery, ADescriptionIsLookedForUntilItIsThereAndThenKept) {
  Lamp record;
  EXPECT_EQ(record.GetSubject(), L"");
  fs::create_directories(m_root / m_lamp);
  EXPECT_EQ(record.GetSubject(), L"") << "a folder is no description";
  fs::remove(m_root / m_lamp);
  Describe("[MergeModule]\nSubject=Lamp");
  EXPECT_EQ(record.GetSubject(), L"Lamp");
  Describe("[MergeModule]\nSubject=Other");
  EXPECT_EQ(record.GetSubject(), L"Lamp");
  fs::remove(m_root / m_lamp);
  EXPECT_EQ(record.GetSubject(), L"Lamp");
}

TEST_F(Gallery, WhatCannotBeOpenedReadsAsEmptyWithoutAnError) {
  Describe(kTwoDownloads);
  Lamp locked;
  {
    HANDLE lock = ::CreateFileW((m_root / m_lamp).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, lock);
    EXPECT_EQ(locked.GetVersion(), L"");
    ::CloseHandle(lock);
  }
  EXPECT_FALSE(TakeErrorObject());
  EXPECT_EQ(locked.GetVersion(), L"") << "was opened again";
  EXPECT_EQ(L"present", StateOf(locked));
  EXPECT_EQ(0, locked.GetDownloadFileCount());

  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_root / "none").c_str());
  Lamp homeless;
  EXPECT_EQ(homeless.GetVersion(), L"");
  EXPECT_EQ(L"present", StateOf(homeless));
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", m_root.c_str());
  EXPECT_EQ(homeless.GetVersion(), L"2.0");
}

TEST_F(Gallery, NoRootIsNoGalleryAndNotTheCurrentFolder) {
  Describe(kTwoDownloads);
  for (const char* const file : {"one/lamp.msm", "d/1.bin", "d/3.bin"}) {
    Put(file, "x");
  }
  fs::current_path(m_root);
  Lamp opened(L"2.0");
  EXPECT_EQ(opened.GetVersion(), L"2.0");
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", L"");
  EXPECT_EQ(L"absent, needs download: one", StateOf(opened));
  Lamp unopened;
  EXPECT_EQ(unopened.GetVersion(), L"");
  EXPECT_EQ(L"present", StateOf(unopened));
}

TEST_F(Gallery, NamesDoNotLeaveTheGalleryFolder) {
  const fs::path gallery("ObjectGallery");
  for (const wchar_t* name : {L"..\\outside", L"../outside", L"sub\\lamp", L"sub/lamp"}) {
    Put(gallery / (name + std::wstring(L".ini")), "[MergeModule]\nSubject=Lamp");
    ASSERT_TRUE(fs::exists(m_root / gallery / (name + std::wstring(L".ini"))));
    CMMGallery record;
    record.SetNameAndVersion(name, nullptr);
    EXPECT_EQ(record.GetSubject(), L"") << name;
  }
  Put(gallery / L"{a} b..c.ini", "[MergeModule]\nSubject=Lamp");
  CMMGallery plain;
  plain.SetNameAndVersion(L"{a} b..c", nullptr);
  EXPECT_EQ(plain.GetSubject(), L"Lamp");
}

TEST_F(Gallery, ItemsOfLists) {
  Describe(
      "[Dependency]\nKey1=Socket.1\n[Socket.1]\nVersion=1.5\nLanguage=1031\n"
      "[Exclusions]\nKey2=Candle.1\nKey3=\n"
      "[Candle.1]\nExcludedMinVersion=1\nExcludedMaxVersion=3\nExcludedLanguage=-5\n"
      "[Files]\nKey1=bulb\n[bulb]\nFileName=bulb.dll\nVersion=4.5\nFileSize=12abc\nLanguage=\n");
  Lamp record;
  EXPECT_EQ(1, record.GetDependencyCount());
  EXPECT_EQ(2, record.GetExclusionCount());
  EXPECT_EQ(1, record.GetFileCount());

  CUniqueBstr a, b, c;
  long size = -1;
  long language = -1;
  const auto told = [&] {
    return CWideString::Format(L"%s|%s|%s|%d|%d", a.Get(), b.Get(), c.Get(), size, language);
  };
  record.GetDependency(0, a.Put(), b.Put(), &language);
  EXPECT_EQ(told(), L"Socket.1|1.5|(null)|-1|1031");
  record.GetExclusion(1, a.Put(), b.Put(), c.Put(), &language);
  EXPECT_EQ(told(), L"Candle.1|1|3|-1|-5");
  record.GetFile(0, a.Put(), b.Put(), c.Put(), &size, &language);
  EXPECT_EQ(told(), L"bulb|bulb.dll|4.5|12|0");
  record.GetFile(0, nullptr, nullptr, nullptr, &(size = -1), &language);  // no text is wanted
  EXPECT_EQ(12, size);
  // Items that are missing, one inside the count, leave texts as they are and numbers 0.
  for (const long index : {0L, 3L, -1L}) {
    BSTR kept = c.Get();
    record.GetExclusion(index, nullptr, &kept, nullptr, &(language = -1));
    EXPECT_EQ(c.Get(), kept) << index;
    EXPECT_EQ(0, language) << index;
  }
}

// ---- A module record of the gallery

TEST_F(Gallery, AModuleRecordOfTheGalleryIsFilledFromTheDescriptionAlone) {
  Put("one/lamp.msm", "no database: its tables are not read");
  DescribeInUtf16(
      L"\uFEFF[mergemodule]\r\nFileName=lamp.msm\r\nLanguage=1049x\r\nModuleID=Лампа.1\r\n"
      L"Author=Ζωή\r\nComments=光\r\nSubject=Lampe für \U0001F600\r\nVersion=2.0\r\n"
      L"[LAMP.MSM]\r\nLocation=x\r\n");
  const std::wstring path = (m_root / "one" / "lamp.msm").wstring();
  CCacheMSM record;
  record.InitFromGallery(L"lamp");
  EXPECT_EQ(record.Path(), path);
  EXPECT_EQ(1049, record.Language());
  EXPECT_EQ(record.ModuleID(), L"Лампа.1");
  EXPECT_EQ(record.Key(), L"Лампа.1:1049");
  EXPECT_EQ(record.Version(), L"2.0");
  EXPECT_EQ(record.Author(), L"Ζωή");
  EXPECT_EQ(record.Comments(), L"光");
  EXPECT_EQ(record.Subject(), L"Lampe für \U0001F600");
  EXPECT_EQ(record.DisplayName(), L"Lampe für \U0001F600");
  EXPECT_EQ(record.PackageCode(), L"lamp");
  EXPECT_EQ(record.GetOrigin(), L"");
  EXPECT_EQ(L"present, needs download: one", StateOf(record)) << "no version is known";

  EXPECT_TRUE(record.GetDialogs().empty());
  EXPECT_TRUE(record.GetCustomActions().empty());
  EXPECT_TRUE(record.GetDependencies().empty());
  EXPECT_TRUE(record.GetExclusions().empty());
  EXPECT_TRUE(record.GetFiles().empty());

  Describe(kLamp);
  CCacheMSM nameless;
  nameless.InitFromGallery(L"lamp");
  EXPECT_EQ(nameless.DisplayName(), path) << "without a subject";
  EXPECT_EQ(nameless.Key(), L":0");
}

// ---- Indexes, which a process reads once

TEST_F(Gallery, IndexesThatAreMissingAreNoFailure) {
  CIniIndexes& indexes = CIniIndexes::Instance();
  if (!indexes.FileModules().empty()) {
    GTEST_SKIP() << "this process has read its indexes; ctest gives each test its own";
  }
  ::SetEnvironmentVariableW(L"QM_MODULE_INDEX_DIR", (m_root / "none").c_str());
  ::SetEnvironmentVariableW(L"QM_FILE_INDEX_DIR", L"");  // which is not the current folder
  fs::current_path(m_root);
  Put("PlatformFilesToModules.ini", "[PlatformFileToModule]\nb.dll=Lamp.9\n");
  Put("FilesToModules.ini", "[FilesToModules]\nsetup.exe=0:Lamp.9\n");
  const auto services = CreateApplicationServices();
  for (int round = 1; round <= 2; ++round) {
    indexes.LoadOnce(*services);
    EXPECT_FALSE(TakeErrorObject());
    CWideString name;
    EXPECT_FALSE(indexes.LookupModuleName(L"Lamp.9:7", name));
    EXPECT_TRUE(indexes.FileModules().empty());
    EXPECT_TRUE(indexes.PlatformFileModules().empty());
    Put("none/modules.ini", "[modules]\nLamp.9:7=Late\n");
  }
}

}  // namespace
