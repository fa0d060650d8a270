#include "gallery/MMGallery.h"

#include <filesystem>
#include <sstream>

#include "common/Bstr.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace fs = std::filesystem;

namespace {

/// A gallery in a folder of its own, which is the gallery root as well; modules are searched for in
/// its folders "one" and "two".
class MMGalleryTest : public ::testing::Test {
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
    PutFile(m_root / file, bytes);
  }

  /// Puts the description of the module "lamp".
  void Describe(std::string_view text) { Put(m_lamp, text); }

  /// The answers to the three questions, as "present, needs download: one", with the folder of the
  /// local path.
  std::wstring StateOf(gallery::CMMGallery& record) {
    VARIANT_BOOL present = 7;
    VARIANT_BOOL needsDownload = 7;
    common::UniqueBstr text;
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

  const TestFolder m_folder;
  const fs::path m_root = m_folder.Path();
  const fs::path m_previous = fs::current_path();
  const fs::path m_lamp = fs::path("ObjectGallery") / "lamp.ini";
};

struct Lamp : gallery::CMMGallery {
  explicit Lamp(const wchar_t* version = L"") { SetNameAndVersion(L"lamp", version); }
};

const std::string kLamp =
    "[MergeModule]\nFileName=lamp.msm\nVersion=2.0\n[lamp.msm]\nLocation=anything\n";
const std::string kTwoDownloads =
    kLamp + "[DownloadFiles]\nKey1=first\nKey3=third\n[first]\nLocation=d\\1.bin\n" +
    "[third]\nLocation=\\d\\3.bin\n";

TEST_F(MMGalleryTest, PresenceDependsOnDescriptionAndFiles) {
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

TEST_F(MMGalleryTest, PresenceIsFixedAtTheFirstQuestion) {
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

TEST_F(MMGalleryTest, ADescriptionIsLookedForUntilItIsThereAndThenKept) {
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

TEST_F(MMGalleryTest, ADescriptionThatCannotBeOpenedReadsAsEmpty) {
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

TEST_F(MMGalleryTest, AnEmptyRootIsNotTheCurrentFolder) {
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

TEST_F(MMGalleryTest, NamesDoNotLeaveTheGalleryFolder) {
  const fs::path gallery("ObjectGallery");
  for (const wchar_t* name : {L"..\\outside", L"../outside", L"sub\\lamp", L"sub/lamp"}) {
    Put(gallery / (name + std::wstring(L".ini")), "[MergeModule]\nSubject=Lamp");
    ASSERT_TRUE(fs::exists(m_root / gallery / (name + std::wstring(L".ini"))));
    gallery::CMMGallery record;
    record.SetNameAndVersion(name, nullptr);
    EXPECT_EQ(record.GetSubject(), L"") << name;
  }
  Put(gallery / L"{a} b..c.ini", "[MergeModule]\nSubject=Lamp");
  gallery::CMMGallery plain;
  plain.SetNameAndVersion(L"{a} b..c", nullptr);
  EXPECT_EQ(plain.GetSubject(), L"Lamp");
}

TEST_F(MMGalleryTest, ItemsOfListsAreReadByPosition) {
  Describe(
      "[Dependency]\nKey1=Socket.1\n[Socket.1]\nVersion=1.5\nLanguage=1031\n"
      "[Exclusions]\nKey2=Candle.1\nKey3=\n"
      "[Candle.1]\nExcludedMinVersion=1\nExcludedMaxVersion=3\nExcludedLanguage=-5\n"
      "[Files]\nKey1=bulb\n[bulb]\nFileName=bulb.dll\nVersion=4.5\nFileSize=12abc\nLanguage=\n");
  Lamp record;
  EXPECT_EQ(1, record.GetDependencyCount());
  EXPECT_EQ(2, record.GetExclusionCount());
  EXPECT_EQ(1, record.GetFileCount());

  common::UniqueBstr a, b, c;
  long size = -1;
  long language = -1;
  const auto told = [&] {
    return common::WideString::Format(L"%s|%s|%s|%d|%d", a.Get(), b.Get(), c.Get(), size, language);
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

}  // namespace

}  // namespace qm::tests
