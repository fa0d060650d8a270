#include "tests/support/CatalogFixture.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

#include "msidb/MsiHandle.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"

namespace qm::tests {

namespace {

/// Why files cannot be opened or queried, and why folders cannot be listed; ERROR_SUCCESS if they
/// can.
DWORD s_fileFailure, s_listingFailure;

bool Fails(DWORD code) {
  ::SetLastError(code);
  return code != ERROR_SUCCESS;
}

HANDLE WINAPI OpenOrFail(const wchar_t* path, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                         HANDLE fileTemplate) {
  return Fails(s_fileFailure)
             ? INVALID_HANDLE_VALUE
             : ::CreateFileW(path, access, share, security, disposition, flags, fileTemplate);
}

DWORD WINAPI AttributesOrFail(const wchar_t* path) {
  return Fails(s_fileFailure) ? INVALID_FILE_ATTRIBUTES : ::GetFileAttributesW(path);
}

HANDLE WINAPI FindFirstOrFail(const wchar_t* pattern, WIN32_FIND_DATAW* found) {
  const bool isFolder = std::wcschr(pattern, L'*') != nullptr;
  return isFolder && Fails(s_listingFailure) ? INVALID_HANDLE_VALUE
                                             : ::FindFirstFileW(pattern, found);
}

using testing::EndsWith;
using testing::PrintToString;
using testing::StartsWith;

class CatalogTest : public CatalogFixture {
 protected:
  /// Replaces the file at `path` with a copy.
  void Copy(const std::wstring& from, const std::wstring& path) const {
    EXPECT_TRUE(::CopyFileW(from.c_str(), PathOf(path).c_str(), FALSE));
  }

  /// Replaces the first occurrence of the bytes `from` in a file with `to`, which has equal length.
  void Overwrite(const std::wstring& path, const std::string& from, const std::string& to) const {
    std::fstream file(std::filesystem::path(m_folder / path),
                      std::ios::in | std::ios::out | std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    ASSERT_NE(std::string::npos, bytes.find(from));
    file.seekp(static_cast<std::streamoff>(bytes.find(from)));
    file << to;
  }

  /// Changes the last-write time of a file.
  void ShiftTime(const std::wstring& path, int seconds) const {
    const std::filesystem::path file(m_folder / path);
    last_write_time(file, last_write_time(file) + std::chrono::seconds(seconds));
  }
};

TEST_F(CatalogTest, ListsSourcesInTwoPassesAndThenTheGallery) {
  SetSearchPath(L"*two,*one,*missing,*TWO\\,Q:\\removed");
  WriteModule(L"one\\b.msm", "Alpha", "1.0", 1031);
  WriteModule(L"one\\a.msm", "Beta");
  WriteModule(L"two\\z.msm", "Alpha");
  WriteModule(L"two\\not a module.ms", "Gamma");
  std::filesystem::create_directories(PathOf(L"two\\folder.msm"));
  WriteDescription(L"known", "BETA");
  WriteDescription(L"new", "Delta", "2.0", 0);
  WriteDescription(L"other name", "delta", "3.0", 0);
  WriteDescription(L"unnamed", "");
  const auto catalog = NewCatalog();
  EXPECT_EQ(L"Alpha:1031 Beta:1033 Alpha:1033 Delta:0", KeysOf(catalog.Get()))
      << "keys are equal in any letter case";
}

TEST_F(CatalogTest, AListIsReplacedWhenSomethingChangedAndOnlyThen) {
  SetSearchPath(L"*a,*b");
  const std::wstring two = WriteModule(L"spare\\2", "Two"), rich = WriteModule(L"spare\\3", "Rich");
  BuildRichModule(PathOf(L"a\\0.msm"));
  WriteModule(L"a\\1.msm", "One");
  const auto file = [&](const wchar_t* path) { return std::filesystem::path(m_folder / path); };
  const struct {
    const char* what;
    std::function<void()> change;
    int filesRead;  // -1 if the list stays the same
    const wchar_t* keys;
  } steps[] = {
      {"nothing", [] {}, -1, L"One:1033 Rich.0A1B:1033"},
      {"other files", [&] { WriteText(L"a\\1.msm.txt", ""); }, -1, L"One:1033 Rich.0A1B:1033"},
      {"the gallery alone", [&] { WriteDescription(L"x", "New"); }, -1, L"One:1033 Rich.0A1B:1033"},
      {"a new file", [&] { Copy(two, L"b\\2.msm"); }, 1,
       L"One:1033 Rich.0A1B:1033 Two:1033 New:1033"},
      {"newer", [&] { ShiftTime(L"a\\1.msm", 1); }, 1,
       L"One:1033 Rich.0A1B:1033 Two:1033 New:1033"},
      {"older", [&] { ShiftTime(L"b\\2.msm", -100000); }, 1,
       L"One:1033 Rich.0A1B:1033 Two:1033 New:1033"},
      {"another size at the same time",
       [&] {
         const auto time = last_write_time(file(L"b\\2.msm"));
         Copy(m_folder / L"a\\0.msm", L"b\\2.msm");
         last_write_time(file(L"b\\2.msm"), time);
       },
       1, L"One:1033 Rich.0A1B:1033 Rich.0A1B:1033 New:1033"},
      {"replaced", [&] { rename(file(L"spare\\2"), file(L"b\\2.msm")); }, 1,
       L"One:1033 Rich.0A1B:1033 Two:1033 New:1033"},
      {"renamed", [&] { rename(file(L"a\\1.msm"), file(L"a\\1 of many.MSM")); }, 1,
       L"One:1033 Rich.0A1B:1033 Two:1033 New:1033"},
      {"moved", [&] { rename(file(L"a\\1 of many.MSM"), file(L"b\\1.msm")); }, 1,
       L"Rich.0A1B:1033 One:1033 Two:1033 New:1033"},
      {"removed", [&] { remove(file(L"b\\1.msm")); }, 0, L"Rich.0A1B:1033 Two:1033 New:1033"},
      {"a folder removed", [&] { remove_all(file(L"b")); }, 0, L"Rich.0A1B:1033 New:1033"},
      {"and made again", [&] { Copy(rich, L"b\\9.msm"); }, 1, L"Rich.0A1B:1033 Rich:1033 New:1033"},
  };
  // Two catalogs share what either has read or found to have changed.
  common::ComPtr<IMMCatalogCaskel> catalogs[] = {NewCatalog(), NewCatalog()};
  common::ComPtr<IMergeModules> lists[] = {ModulesOf(catalogs[0].Get()),
                                           ModulesOf(catalogs[1].Get())};
  ReadModule(ModuleAt(lists[0].Get(), 2).Get(), L"Dialogs");
  for (const auto& step : steps) {
    SCOPED_TRACE(step.what);
    step.change();
    std::swap(catalogs[0], catalogs[1]);
    std::swap(lists[0], lists[1]);
    const int opened = FilesOpened();
    for (int i : {0, 1}) {
      const common::ComPtr<IMergeModules> before = lists[i];
      const std::wstring keysBefore = KeysOf(before.Get());
      lists[i] = ModulesOf(catalogs[i].Get());
      EXPECT_EQ(step.filesRead < 0, before.Get() == lists[i].Get());
      EXPECT_EQ(step.keys, KeysOf(lists[i].Get()));
      EXPECT_EQ(keysBefore, KeysOf(before.Get())) << "a list that was handed out changed";
      EXPECT_EQ(lists[i].Get(), ModulesOf(catalogs[i].Get()).Get());
    }
    const bool isFirst = std::wstring_view(step.keys).substr(0, 4) == L"Rich";
    EXPECT_EQ(L"ZuluDialog / AlphaDialog",
              ReadModule(ModuleAt(lists[0].Get(), isFirst ? 1 : 2).Get(), L"Dialogs"));
    EXPECT_EQ(std::max(step.filesRead, 0), FilesOpened() - opened);
  }
}

TEST_F(CatalogTest, ObjectsOutliveTheirFilesFoldersAndCatalogs) {
  SetSearchPath(L"*a");
  const std::wstring path = PathOf(L"a\\rich.msm");
  BuildRichModule(path);
  WriteDescription(L"described", "Described", "4.2", 0);
  auto catalog = NewCatalog();
  const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
  const auto rich = ModuleAt(list.Get(), 1), described = ModuleAt(list.Get(), 2);
  common::ComPtr<IMMSources> sources;
  common::ComPtr<IMMSource> source;
  EXPECT_EQ(S_OK, catalog->get_Sources(sources.Put()));
  EXPECT_EQ(S_OK, sources->get_Item(Variant(1), source.Put()));
  EXPECT_EQ(L"ZuluDialog / AlphaDialog", ReadModule(rich.Get(), L"Dialogs"));

  std::filesystem::remove_all(PathOf(L"a"));
  std::filesystem::remove_all(PathOf(L"gallery"));
  SetSearchPath(L"*b");
  EXPECT_EQ(L"", KeysOf(NewCatalog().Get()));
  EXPECT_EQ(L"", KeysOf(catalog.Get()));
  catalog.Release();

  EXPECT_EQ(L"Rich.0A1B:1033 Described:0", KeysOf(list.Get()));
  EXPECT_EQ(L"ZuluDialog / AlphaDialog", ReadModule(rich.Get(), L"Dialogs"));
  EXPECT_EQ(L"A rich module", ReadModule(rich.Get(), L"DisplayName"));
  EXPECT_EQ(m_folder / L"a", ReadModule(rich.Get(), L"Origin"));
  EXPECT_THAT(ReadModule(rich.Get(), L"Files"), EndsWith(L"MsiOpenDatabase(" + path + L")"));
  EXPECT_EQ(L"4.2", ReadModule(described.Get(), L"Version"));
  EXPECT_EQ(L"", ReadModule(described.Get(), L"Files"));
  common::ComPtr<IMergeModules> ofSource;
  EXPECT_EQ(S_OK, source->get_MergeModules(ofSource.Put()));
  EXPECT_EQ(L"Rich.0A1B:1033", KeysOf(ofSource.Get()));
}

TEST_F(CatalogTest, AFileTakesPrecedenceOverTheGalleryAndOfDoublesTheFirstIsFound) {
  SetSearchPath(L"*a,*b");
  WriteDescription(L"d", "ALPHA");
  const std::wstring late = WriteModule(L"b\\1.msm", "Alpha"),
                     second = WriteModule(L"a\\2.msm", "Alpha"),
                     first = WriteModule(L"a\\1.msm", "Alpha");
  const auto catalog = NewCatalog();
  for (const std::wstring& path : {first, second, late}) {
    SCOPED_TRACE(PrintToString(path));
    const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
    common::ComPtr<IMergeModule> found;
    EXPECT_EQ(S_OK, list->get_Item(Variant(L"aLPHA:1033"), found.Put()));
    EXPECT_EQ(path, ReadModule(found.Get(), L"Path"));
    EXPECT_EQ(KeysOf(list.Get()), Find(catalog.Get(), L"alpha")) << "doubles are all listed";
    EXPECT_TRUE(std::filesystem::remove(path));
  }
  EXPECT_EQ(L"ALPHA:1033", KeysOf(catalog.Get()));
  WriteModule(L"a\\1.msm", "Alpha");
  EXPECT_EQ(L"Alpha:1033", KeysOf(catalog.Get()));
}

TEST_F(CatalogTest, FilesThatCannotBeReadAreListedAndTriedAgain) {
  SetSearchPath(L"*a");
  const std::wstring good = WriteModule(L"a\\good.msm", "Good");
  const std::wstring locked = WriteModule(L"a\\locked.msm", "Locked");
  WriteText(L"a\\empty.msm", "");
  WriteText(L"a\\text.msm", "This is no database.");
  BuildModule(PathOf(L"a\\other.msm"), {{L"Dialog", "Some\t1\n"}});
  BuildRichModule(PathOf(L"a\\summary.msm"));
  Overwrite(L"a\\summary.msm", "\xE0\x85\x9F\xF2", "....");
  Copy(good, L"a\\cut.msm");
  std::filesystem::resize_file(m_folder / L"a\\cut.msm", 2048);
  const std::wstring overlong = L"\\\\?\\" + (m_folder / L"a\\z") + std::wstring(245, L'z');
  EXPECT_TRUE(::CopyFileW(good.c_str(), (overlong + L".msm").c_str(), FALSE));
  HANDLE lock = ::CreateFileW(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const auto catalog = NewCatalog();
  const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
  EXPECT_EQ(L"? ? ? ? ? Good:1033 Good:1033 Rich.0A1B:1033", KeysOf(list.Get()));
  for (long position = 1; position <= 5; ++position) {
    const common::ComPtr<IMergeModuleTavik> module = ModuleAt(list.Get(), position);
    EXPECT_EQ(ReadModule(module.Get(), L"Path"), ReadModule(module.Get(), L"DisplayName"));
    EXPECT_THAT(ReadModule(module.Get(), L"Files"), StartsWith(L"0x800"));
    EXPECT_EQ(L"", ReadModule(module.Get(), L"Files")) << "a table fails once";
  }
  const common::ComPtr<IMergeModuleTavik> withoutSummary = ModuleAt(list.Get(), 8);
  EXPECT_EQ(m_folder / L"a\\summary.msm", ReadModule(withoutSummary.Get(), L"DisplayName"));
  EXPECT_EQ(L"ZuluDialog / AlphaDialog", ReadModule(withoutSummary.Get(), L"Dialogs"));
  int opened = FilesOpened();
  EXPECT_EQ(list.Get(), ModulesOf(catalog.Get()).Get()) << "they are as unreadable as before";
  EXPECT_EQ(6, FilesOpened() - opened) << "each is tried once";
  ::CloseHandle(lock);
  EXPECT_TRUE(::DeleteFileW((overlong + L".msm").c_str()));
  EXPECT_EQ(L"? ? ? ? Good:1033 Locked:1033 Rich.0A1B:1033", KeysOf(catalog.Get()));
  for (const wchar_t* name :
       {L"a\\text.msm", L"a\\empty.msm", L"a\\other.msm", L"a\\cut.msm", L"a\\summary.msm"}) {
    Copy(good, name);
  }
  EXPECT_EQ(L"Good:1033 Good:1033 Good:1033 Good:1033 Good:1033 Good:1033 Locked:1033",
            KeysOf(catalog.Get()));
  opened = FilesOpened();
  KeysOf(catalog.Get());
  EXPECT_EQ(0, FilesOpened() - opened);
}

TEST_F(CatalogTest, OnlyMissingFilesAndFoldersLeaveTheList) {
  SetSearchPath(L"*a");
  const std::wstring file = WriteModule(L"a\\1.msm", "One");
  const std::pair<const char*, void*> replacements[] = {
      {"CreateFileW", reinterpret_cast<void*>(&OpenOrFail)},
      {"GetFileAttributesW", reinterpret_cast<void*>(&AttributesOrFail)},
      {"FindFirstFileW", reinterpret_cast<void*>(&FindFirstOrFail)},
      {"FindClose", reinterpret_cast<void*>(&::FindClose)}};
  for (const auto& [name, replacement] : replacements) {
    EXPECT_TRUE(ReplaceImport(m_server.Module(), "kernel32.dll", name, replacement));
  }
  const auto catalog = NewCatalog();
  s_fileFailure = ERROR_ACCESS_DENIED;
  const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
  EXPECT_EQ(L"?", KeysOf(list.Get()));
  EXPECT_EQ(list.Get(), ModulesOf(catalog.Get()).Get()) << "it is not found again at every call";
  s_fileFailure = ERROR_SUCCESS;
  EXPECT_EQ(L"One:1033", KeysOf(catalog.Get()));

  for (const DWORD away : {ERROR_ACCESS_DENIED, ERROR_BAD_NETPATH, ERROR_NOT_READY}) {
    s_listingFailure = away;
    EXPECT_EQ(L"One:1033", KeysOf(catalog.Get())) << away;
  }
  for (const DWORD missing : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_DIRECTORY}) {
    s_listingFailure = missing;
    EXPECT_EQ(L"", KeysOf(catalog.Get())) << missing;
    s_listingFailure = ERROR_SUCCESS;
    EXPECT_EQ(L"One:1033", KeysOf(catalog.Get()));
  }
}

TEST_F(CatalogTest, AFileMayVanishOrChangeAndCallsMayComeInWhileItIsRead) {
  SetSearchPath(L"*a");
  const std::wstring file = WriteModule(L"a\\1.msm", "One"), away = PathOf(L"a\\1.away");
  WatchOpenedFiles();
  const auto catalog = NewCatalog();
  m_whenOpened = [&] { EXPECT_TRUE(::MoveFileW(file.c_str(), away.c_str())); };
  EXPECT_EQ(L"", KeysOf(catalog.Get())) << "a file that is gone is not listed";
  EXPECT_TRUE(::MoveFileW(away.c_str(), file.c_str()));
  EXPECT_EQ(L"One:1033", KeysOf(catalog.Get())) << "it is back as it was";

  m_whenOpened = [&] {
    WriteModule(L"spare\\2", "Two");
    Copy(m_folder / L"spare\\2", L"a\\1.msm");
  };
  ShiftTime(L"a\\1.msm", 5);
  EXPECT_EQ(L"Two:1033", KeysOf(catalog.Get()));
  EXPECT_EQ(L"Two:1033", KeysOf(catalog.Get()));

  // A call that comes in meanwhile gets the previous list.
  const auto second = NewCatalog();
  ShiftTime(L"a\\1.msm", 5);
  m_whenOpened = [&] {
    long zero = 7;
    common::ComPtr<IMergeModules> none;
    EXPECT_EQ(L"Two:1033", KeysOf(catalog.Get()));
    EXPECT_EQ(S_OK, second->Refresh(&zero));
    EXPECT_EQ(E_PENDING, second->get_MergeModules(none.Put()));
    EXPECT_EQ(L"The catalog is being built.", TakeDescription());
  };
  EXPECT_EQ(L"Two:1033", KeysOf(catalog.Get()));
  EXPECT_FALSE(m_whenOpened) << "the file was not read";
  EXPECT_EQ(L"Two:1033", KeysOf(second.Get()));
}

}  // namespace

}  // namespace qm::tests
