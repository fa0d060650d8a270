#include <filesystem>

#include "common/Bstr.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"

namespace qm::tests {

namespace {

using testing::PrintToString;

std::wstring Text(IDispatch* object, const wchar_t* property) {
  Variant value;
  EXPECT_EQ(S_OK, Invoke(object, property, DISPATCH_PROPERTYGET, nullptr, &value));
  EXPECT_EQ(S_OK, ::VariantChangeType(&value, &value, VARIANT_ALPHABOOL, VT_BSTR));
  return std::wstring(common::ViewOf(value.bstrVal));
}

class CatalogSourceTest : public CatalogFixture {
 protected:
  /// All sources, with "*" for the test's folder: entry, folder, name, second pass and keys.
  std::wstring SourcesOf(IMMCatalog* catalog) const {
    common::ComPtr<IMMSources> sources;
    EXPECT_EQ(S_OK, catalog->get_Sources(sources.Put())) << PrintToString(TakeDescription());
    std::wstring all;
    long count = 0;
    sources->get_Count(&count);
    for (long number = 1; number <= count; ++number) {
      common::ComPtr<IMMSource> source, same;
      common::ComPtr<IMergeModules> modules;
      EXPECT_EQ(S_OK, sources->get_Item(Variant(number), source.Put()));
      EXPECT_EQ(S_OK, sources->get_Item(Variant(std::to_wstring(number).c_str()), same.Put()));
      EXPECT_EQ(source.Get(), same.Get());
      EXPECT_EQ(S_OK, source->get_MergeModules(modules.Put()));
      for (const wchar_t* property : {L"Entry", L"Folder", L"DisplayName", L"SecondPass"}) {
        all += Text(source.Get(), property) + L";";
      }
      all += KeysOf(modules.Get()) + L"|";
    }
    const std::wstring folder = m_folder / L"";
    for (size_t at = 0; (at = all.find(folder, at)) != std::wstring::npos;) {
      all.replace(at, folder.size(), L"*");
    }
    return all;
  }
};

TEST_F(CatalogSourceTest, FoldersAreKnownByTheirFullPathsInAnySpelling) {
  WriteModule(L"one\\1.msm", "One");
  WriteModule(L"\u00DCb \u0416\u6F22\\2.msm", "Two");
  ::SetEnvironmentVariableW(L"QM_TEST_FOLDER", (m_folder / L"one").c_str());
  wchar_t current[MAX_PATH];
  ::GetCurrentDirectoryW(MAX_PATH, current);
  ::SetCurrentDirectoryW((m_folder / L"").c_str());
  const std::pair<const wchar_t*, std::wstring> cases[] = {
      {L"*one", L"*one;*one;*one;False;One:1033|"},
      {L"*one\\,*ONE,*x\\..\\one\\.", L"*one\\;*one;*one;False;One:1033|"},
      {L" one ,, *one", L"one;*one;*one;False;One:1033|"},
      {L"%QM_TEST_FOLDER%\\", L"%QM_TEST_FOLDER%\\;*one;*one;False;One:1033|"},
      {L"*\u00DCb \u0416\u6F22, *\u00FCB \u0436\u6F22",
       L"*\u00DCb \u0416\u6F22;*\u00DCb \u0416\u6F22;*\u00DCb \u0416\u6F22;False;Two:1033|"},
      {L"%QM_NO_FOLDER%", L"%QM_NO_FOLDER%;*%QM_NO_FOLDER%;*%QM_NO_FOLDER%;False;|"},
      {L"Q:\\,*one,Q:\\x\\",
       L"*one;*one;*one;False;One:1033|Q:\\;Q:\\;Q:\\;False;|"
       L"Q:\\x\\;Q:\\x;Q:\\x;False;|"},
      {L" , ,\\\\", L""},
  };
  for (const auto& [path, sources] : cases) {
    SCOPED_TRACE(PrintToString(std::wstring(path)));
    SetSearchPath(path);
    EXPECT_EQ(sources, SourcesOf(NewCatalog().Get()));
    SetSearchPath(L"");
    ::SetEnvironmentVariableW(L"QM_USER_MODULE_PATH", L"");
  }
  ::SetCurrentDirectoryW(current);
  ::SetEnvironmentVariableW(L"QM_TEST_FOLDER", nullptr);
}

/// A path with short names in place of those that have one.
std::wstring ShortPath(const std::wstring& path) {
  wchar_t names[MAX_PATH] = L"";
  EXPECT_LT(0u, ::GetShortPathNameW(path.c_str(), names, MAX_PATH));
  return names;
}

int s_questionsForLongNames = 0;

DWORD WINAPI GetLongNames(const wchar_t* path, wchar_t* names, DWORD size) {
  ++s_questionsForLongNames;
  return ::GetLongPathNameW(path, names, size);
}

TEST_F(CatalogSourceTest, CatalogsThatSpellAFolderDifferentlyShareItsList) {
  const std::wstring folder = m_folder / L"one of many modules";
  WriteModule(L"one of many modules\\1.msm", "One");
  WriteText(L"gallery\\ObjectGallery\\x.ini",
            "[MergeModule]\r\nModuleID=Two\r\nFileName=1.msm\r\n[1.msm]\r\nLocation=x\r\n");
  ::SetEnvironmentVariableW(L"QM_TEST_FOLDER", folder.c_str());
  const std::wstring shortPath = ShortPath(folder);
  EXPECT_NE(folder, shortPath);
  std::vector<common::ComPtr<IMMCatalogCaskel>> catalogs;
  std::vector<common::ComPtr<IMergeModules>> lists;
  for (const std::wstring& entry :
       {std::wstring(L"*one of many modules"), std::wstring(L"*ONE of many modules\\"),
        std::wstring(L"%QM_TEST_FOLDER%\\."), L"\\\\?\\" + folder, shortPath}) {
    SCOPED_TRACE(PrintToString(entry));
    SetSearchPath(entry + L",\\\\");
    catalogs.push_back(NewCatalog());
    lists.push_back(ModulesOf(catalogs.back().Get()));
    EXPECT_EQ(L"One:1033 Two:0", KeysOf(lists.back().Get()));
    for (long position : {1, 2}) {
      const std::wstring path = ReadModule(ModuleAt(lists.back().Get(), position).Get(), L"Path");
      EXPECT_EQ(0, ::_wcsicmp((folder + L"\\1.msm").c_str(), path.c_str())) << PrintToString(path);
    }
  }
  const int opened = FilesOpened();
  EXPECT_TRUE(ReplaceImport(m_server.Module(), "kernel32.dll", "GetLongPathNameW",
                            reinterpret_cast<void*>(&GetLongNames)));
  for (size_t i = 0; i < catalogs.size(); ++i) {
    EXPECT_EQ(lists[i].Get(), ModulesOf(catalogs[i].Get()).Get()) << i;
  }
  EXPECT_EQ(opened, FilesOpened());
  EXPECT_EQ(0, s_questionsForLongNames) << "the file system was asked again";
  ::SetEnvironmentVariableW(L"QM_TEST_FOLDER", nullptr);
  lists.clear();
  catalogs.clear();
  Settle();  // the process keeps the long names
}

TEST_F(CatalogSourceTest, TheLatestRefreshDecidesOnTheFoldersOfTheProcess) {
  WriteModule(L"one\\1.msm", "One");
  WriteModule(L"two\\2.msm", "Two");
  SetSearchPath(L"*one");
  ::SetEnvironmentVariableW(L"QM_USER_MODULE_PATH", (m_folder / L"two").c_str());
  const auto both = NewCatalog();
  ::SetEnvironmentVariableW(L"QM_USER_MODULE_PATH", L"");
  const auto one = NewCatalog();
  for (int round = 1; round <= 2; ++round) {
    EXPECT_EQ(L"One:1033 Two:1033", KeysOf(both.Get()));
    const int opened = FilesOpened();
    EXPECT_EQ(L"One:1033", KeysOf(one.Get()));
    EXPECT_EQ(opened, FilesOpened()) << "the folder that stays is not read again";
    EXPECT_EQ(L"*one;*one;*one;False;One:1033|", SourcesOf(both.Get()));
    EXPECT_EQ(L"Two:1033", Find(both.Get(), L"Two")) << "a query does not refresh";
  }
}

class CatalogRepositoryTest : public CatalogSourceTest {
 protected:
  void SetUp() override {
    CatalogSourceTest::SetUp();
    ::SetEnvironmentVariableW(L"QM_DATA_DIR", (m_folder / L"data").c_str());
    SetSearchPath(L"*zulu");
    WriteModule(L"alpha\\1.msm", "Alpha");
    WriteModule(L"zulu\\1.msm", "Zulu");
  }

  /// Writes the list, with the test's folder for "*" and repositories of one search path and one
  /// name each.
  void WriteList(const std::vector<std::pair<std::string, std::string>>& repositories) const {
    const std::string folder = std::filesystem::path(m_folder / L"").string();
    std::string text = "<Repositories>\n";
    for (const auto& [path, name] : repositories) {
      text.append("<Repository><Property Name='DisplayName' Value='").append(name);
      text.append("'/><Property Name='MMSearchPath' Value='").append(path);
      text.append("'/></Repository>\n");
    }
    for (size_t at = 0; (at = text.find('*', at)) != std::string::npos; at += folder.size()) {
      text.replace(at, 1, folder);
    }
    WriteText(L"data\\Repositories\\Repositories.xml", text + "</Repositories>\n");
  }
};

TEST_F(CatalogRepositoryTest, FoldersOfRepositoriesComeInTheSecondPass) {
  const std::wstring zulu = L"*zulu;*zulu;*zulu;False;Zulu:1033|";
  const struct {
    const char* what;
    std::vector<std::pair<std::string, std::string>> repositories;
    std::wstring sources;
    std::wstring keys;
    int opened;
  } steps[] = {
      {"two",
       {{"*alpha,*ZULU,*x", "Shop"}, {"*Alpha,*y", ""}, {"", "None"}},
       L"*alpha;*alpha;Shop;True;Alpha:1033|*x;*x;Shop;True;|*y;*y;*y;True;|" + zulu,
       L"Zulu:1033 Alpha:1033",
       2},
      {"renamed",
       {{"*alpha", "Store"}},
       L"*alpha;*alpha;Store;True;Alpha:1033|" + zulu,
       L"Zulu:1033 Alpha:1033",
       0},
      {"none", {}, zulu, L"Zulu:1033", 0},
      {"again",
       {{"*alpha\\..\\alpha", "Store"}},
       L"*alpha\\..\\alpha;*alpha;Store;True;Alpha:1033|" + zulu,
       L"Zulu:1033 Alpha:1033",
       1},
  };
  const auto catalog = NewCatalog();
  for (const auto& step : steps) {
    SCOPED_TRACE(step.what);
    WriteList(step.repositories);
    const int opened = FilesOpened();
    const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
    EXPECT_EQ(step.keys, KeysOf(list.Get()));
    EXPECT_EQ(step.sources, SourcesOf(catalog.Get()));
    EXPECT_EQ(list.Get(), ModulesOf(catalog.Get()).Get());
    EXPECT_EQ(step.opened, FilesOpened() - opened);
  }
  std::filesystem::remove_all(PathOf(L"data"));
  EXPECT_EQ(L"Zulu:1033", KeysOf(catalog.Get()));
}

TEST_F(CatalogRepositoryTest, AMalformedListFailsUntilItIsMended) {
  WriteList({{"*alpha", "Shop"}});
  const auto catalog = NewCatalog();
  const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
  const std::wstring file = PathOf(L"data\\Repositories\\Repositories.xml");
  WriteText(L"data\\Repositories\\Repositories.xml", "<Repositories>\n<Repository>\n</Broken>\n");
  WriteModule(L"zulu\\2.msm", "Zulu2");
  const auto second = NewCatalog();
  for (const auto& failing : {catalog, second, catalog}) {
    long zero = 7;
    EXPECT_TRUE(FAILED(failing->Refresh(&zero)));
    EXPECT_EQ(0, zero);
    IMergeModules* out = list.Get();
    EXPECT_TRUE(FAILED(failing->get_MergeModules(&out)));
    EXPECT_EQ(list.Get(), out) << "a caller keeps what it held";
    const std::wstring description = TakeDescription();
    EXPECT_THAT(description, testing::StartsWith(file + L", line 3: "));
  }
  EXPECT_EQ(L"Alpha:1033", Find(catalog.Get(), L"Alpha"));
  EXPECT_EQ(L"", Find(catalog.Get(), L"Zulu2"));
  common::ComPtr<IMergeModules> none;
  long count = 0;
  EXPECT_TRUE(FAILED(second->FindModule(nullptr, nullptr, 0, none.Put(), &count)));
  EXPECT_FALSE(none);
  Variant key(L"Zulu"), held(7), result;
  EXPECT_TRUE(FAILED(second->CatalogQuery(key, &held, &result)));
  EXPECT_EQ(7, held.lVal) << "a script keeps its variable";
  WriteList({{"*alpha", "Shop"}});
  EXPECT_EQ(L"Zulu2:1033 Zulu:1033 Alpha:1033", KeysOf(catalog.Get()));
  EXPECT_EQ(L"Zulu2:1033", Find(second.Get(), L"Zulu2"));
}

}  // namespace

}  // namespace qm::tests
