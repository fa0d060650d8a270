#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <set>

#include "common/Bstr.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"
#include "tests/support/UnknownKind.h"

namespace qm::tests {

namespace {

using testing::EndsWith;

/// Key and display name of each module.
using List = std::multiset<std::wstring>;

List Describe(IMergeModules* modules) {
  List list;
  long count = 0;
  modules->get_Count(&count);
  for (long position = 1; position <= count; ++position) {
    const auto module = ModuleAt(modules, position);
    list.insert(ReadModule(module.Get(), L"Key") + L"=" + ReadModule(module.Get(), L"DisplayName"));
  }
  return list;
}

bool IsOfMemory(const ImportedFunction& function) {
  return function.kind == FaultKind::Heap || function.kind == FaultKind::Text;
}

List Without(const List& list, const List& others) {
  List rest;
  std::set_difference(list.begin(), list.end(), others.begin(), others.end(),
                      std::inserter(rest, rest.end()));
  return rest;
}

/// A manager makes a catalog that is refreshed without and with a change, with call 1, 2, 3, ... of
/// one kind failing; then the catalog is refreshed without a fault.
class CatalogFaultTest : public CatalogFixture {
 protected:
  void SetUp() override {
    CatalogFixture::SetUp();
    KeepSiblingsLoaded();
    // The C++ runtime makes some of its state when an exception first finds memory short.
    SweepFaults(FaultKind::Heap, [&](int) { NewCatalog(); });
    Settle();
    WriteModule(L"a\\1.msm", "One");
    WriteModule(L"b\\3.msm", "Three");
    m_spare = WriteModule(L"spare\\2", "Two");
    m_added = PathOf(L"a\\2.msm");
    WriteText(L"data\\Repositories\\Repositories.xml",
              "<Repositories><Repository><Property Name='MMSearchPath' Value='" +
                  std::filesystem::path(m_folder / L"b").string() +
                  "'/></Repository></Repositories>");
  }

  void Sweep(FaultKind kind, bool withGallery) {
    if (withGallery) {
      WriteText(L"gallery\\ObjectGallery\\x.ini",
                "[MergeModule]\r\nModuleID=Four\r\nSubject=Title of Four\r\n");
      m_before.insert(m_described);
      m_after.insert(m_described);
    }
    if (kind == FaultKind::Installer) {
      for (const std::wstring& file : {PathOf(L"a\\1.msm"), PathOf(L"b\\3.msm"), m_spare}) {
        MakeUnknownKind(file);
      }
    }
    const int runs = SweepFaults(kind, [&](int call) {
      SCOPED_TRACE("call " + std::to_string(call));
      SetSearchPath(L"*a");
      ::SetEnvironmentVariableW(L"QM_DATA_DIR", (m_folder / L"data").c_str());
      ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_folder / L"gallery").c_str());
      RunOnce();
      ForgetAll();
      ExpectNothingLeft();
    });
    EXPECT_GT(runs, 5);
    EXPECT_LE(m_dropped, withGallery ? runs / 3 : 0);
  }

  void RunOnce() {
    HRESULT results[4];
    common::ComPtr<IMergeModules> lists[4];
    auto manager = m_server.Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager);
    common::ComPtr<IUnknown> made;
    common::ComPtr<IMMCatalogCaskel> catalog;
    results[0] = manager ? manager->GetCatalog(1, made.Put()) : E_OUTOFMEMORY;
    if (FAILED(results[0])) {
      EXPECT_FALSE(made);
      manager = m_server.Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager);
      EXPECT_EQ(S_OK, manager->GetCatalog(1, made.Put()));
    }
    made.QueryInterface(catalog.Put());
    results[1] = catalog->get_MergeModules(lists[1].Put());
    results[2] = catalog->get_MergeModules(lists[2].Put());
    EXPECT_TRUE(::CopyFileW(m_spare.c_str(), m_added.c_str(), TRUE));
    results[3] = catalog->get_MergeModules(lists[3].Put());
    FailNoCall();

    const ImportedFunction* const fault = FailedFunction();
    SCOPED_TRACE(fault ? fault->name : "no fault");
    int failures = 0, damaged = 0;
    bool isDropped = false;
    for (int step = 0; step < 4; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      if (FAILED(results[step])) {
        ++failures;
        EXPECT_EQ(E_OUTOFMEMORY, results[step]);
        EXPECT_FALSE(lists[step]);
        EXPECT_TRUE(fault && IsOfMemory(*fault));
      } else if (step > 0) {
        const List list = Describe(lists[step].Get()), &whole = step == 3 ? m_after : m_before;
        const List extra = Without(list, whole), missing = Without(whole, list);
        if (missing == List{m_described}) {
          isDropped = true;
          EXPECT_TRUE(fault && IsOfMemory(*fault));
          EXPECT_EQ(List(), extra);
        } else if (!extra.empty()) {
          ++damaged;
          EXPECT_TRUE(fault && !IsOfMemory(*fault));
          EXPECT_EQ(1u, extra.size());
          EXPECT_EQ(1u, missing.size());
          EXPECT_THAT(*extra.begin(), EndsWith(L".msm"));
        } else {
          EXPECT_EQ(List(), missing);
        }
      }
    }
    if (FAILED(results[3])) {
      EXPECT_EQ(L"One:1033", Find(catalog.Get(), L"One"));
      EXPECT_EQ(L"", Find(catalog.Get(), L"Two")) << "not the list from before the failure";
    }
    const bool isSilent = fault && fault->kind == FaultKind::Installer && !fault->reportedAs;
    if (!isSilent) {
      // What goes wrong while a description is opened is dropped; it is opened again when something
      // has changed.
      const int shown = failures + damaged;
      m_dropped += fault && shown == 0;
      EXPECT_TRUE(shown == 1 || (shown == 0 && (!fault || IsOfMemory(*fault))));
      EXPECT_TRUE(isDropped || m_after == Describe(ModulesOf(catalog.Get()).Get()));
    }
    EXPECT_TRUE(::DeleteFileW(m_added.c_str()));
    if (!isSilent) {
      EXPECT_EQ(m_before, Describe(ModulesOf(catalog.Get()).Get()));
      EXPECT_EQ(m_before, Describe(ModulesOf(NewCatalog().Get()).Get()));
    }
  }

  std::wstring m_spare, m_added;
  const std::wstring m_described = L"Four:0=Title of Four";
  List m_before{L"One:1033=Title of One", L"Three:1033=Title of Three"};
  List m_after{L"One:1033=Title of One", L"Two:1033=Title of Two", L"Three:1033=Title of Three"};
  int m_dropped = 0;
};

TEST_F(CatalogFaultTest, AnInstallerCallThatFailsDamagesOneModuleAtMost) {
  Sweep(FaultKind::Installer, true);
}
TEST_F(CatalogFaultTest, AFileCallThatFailsDamagesOneModuleAtMost) { Sweep(FaultKind::File, true); }
TEST_F(CatalogFaultTest, AHeapShortageFailsExactlyOneCall) { Sweep(FaultKind::Heap, false); }
TEST_F(CatalogFaultTest, AHeapShortageFailsOneCallOrDropsADescription) {
  Sweep(FaultKind::Heap, true);
}
TEST_F(CatalogFaultTest, ATextShortageFailsOneCallOrDropsADescription) {
  Sweep(FaultKind::Text, true);
}

TEST_F(CatalogFaultTest, AShortageDuringQueriesFailsOneOfThemAlone) {
  SetSearchPath(L"*a,*b");
  auto catalog = NewCatalog();
  ModulesOf(catalog.Get());
  Variant key(L"One"), keyOfAll(L"one:1033");
  for (const FaultKind kind : {FaultKind::Heap, FaultKind::Text}) {
    const int runs = SweepFaults(kind, [&](int call) {
      SCOPED_TRACE("call " + std::to_string(call));
      common::ComPtr<IMergeModules> found[3];
      common::ComPtr<IMMSources> sources;
      common::ComPtr<IMMSource> source;
      Variant modules, count;
      common::UniqueBstr texts[3];
      long counts[2];
      std::vector<HRESULT> results{
          catalog->FindModule(key.bstrVal, nullptr, 0, found[0].Put(), &counts[0]),
          catalog->FindModules(&keyOfAll.bstrVal, nullptr, 0, found[1].Put(), &counts[1]),
          catalog->CatalogQuery(key, &count, &modules),
          catalog->get_Sources(sources.Put()),
          catalog->GetModuleForFile(key.bstrVal, texts[0].Put()),
          catalog->GetModuleDisplayName(key.bstrVal, texts[1].Put())};
      if (sources) {
        sources->get_Item(Variant(1), source.Put());
        results.push_back(source->get_MergeModules(found[2].Put()));
        results.push_back(source->get_DisplayName(texts[2].Put()));
      }
      FailNoCall();
      const auto failed = std::count(results.begin(), results.end(), E_OUTOFMEMORY);
      EXPECT_EQ(FailedFunction() ? 1 : 0, failed);
      EXPECT_EQ(results.size(), std::count(results.begin(), results.end(), S_OK) + failed);
      EXPECT_EQ(SUCCEEDED(results[0]), found[0] && counts[0] == 1);
      EXPECT_EQ(SUCCEEDED(results[1]), found[1] && counts[1] == 1);
      EXPECT_EQ(SUCCEEDED(results[2]), modules.vt == VT_DISPATCH && count.lVal == 1);
      EXPECT_EQ(SUCCEEDED(results[4]), static_cast<bool>(texts[0]));
      EXPECT_EQ(SUCCEEDED(results[5]), static_cast<bool>(texts[1]));
    });
    EXPECT_GT(runs, kind == FaultKind::Heap ? 20 : 2);
  }
}

TEST_F(CatalogFaultTest, AListThatFailsAgainAndAgainHoldsNoMemory) {
  SetSearchPath(L"*a,*b");
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_folder / L"gallery").c_str());
  for (const wchar_t* const name : {L"1", L"2", L"3"}) {
    WriteDescription(name, std::string("Described") + static_cast<char>(*name));
  }
  const auto first = NewCatalog(), second = NewCatalog(), third = NewCatalog();
  ModulesOf(first.Get());
  const int before = CallCount("malloc");
  ModulesOf(second.Get());
  // The last allocation while a list is built, after everything has been read.
  const int last = CallCount("malloc") - before;
  std::vector<int> blocks;
  for (int round = 1; round <= 4; ++round) {
    common::ComPtr<IMergeModules> none;
    FailCall(FaultKind::Heap, last);
    EXPECT_EQ(E_OUTOFMEMORY, third->get_MergeModules(none.Put()));
    FailNoCall();
    blocks.push_back(HeapBlocks());
  }
  EXPECT_EQ(blocks[1], blocks[3]) << "the first one replaces records that catalogs still list";
}

/// Lists module files that are added, removed and changed at random, by two catalogs of which one
/// is replaced now and then.
class CatalogSoakTest : public CatalogFixture {
 protected:
  void Soak(int refreshes) {
    SetSearchPath(L"*a,*b,*missing");
    ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_folder / L"gallery").c_str());
    common::ComPtr<IMMCatalogCaskel> catalogs[] = {NewCatalog(), NewCatalog()};
    for (int i = 1; i <= refreshes; ++i) {
      ChangeSomething();
      if (i % 50 == 0) {
        catalogs[1] = NewCatalog();
      }
      const auto list = ModulesOf(catalogs[m_random() % 2].Get());
      ASSERT_EQ(ExpectedList(), Describe(list.Get())) << "refresh " << i;
      if (i % 10 == 0) {
        ReadModule(ModuleAt(list.Get(), 1).Get(), L"Files");
      }
    }
  }

  void ChangeSomething() {
    const std::wstring path = m_folder / (std::wstring(m_random() % 2 ? L"a" : L"b") + L"\\" +
                                          std::to_wstring(m_random() % 4) + L".msm");
    const size_t choice = m_random() % 6;
    if (choice < std::size(m_templates)) {
      EXPECT_TRUE(::CopyFileW(m_templates[choice].c_str(), path.c_str(), FALSE));
      m_files[path] = m_titles[choice] ? m_titles[choice] : L"=" + path;
    } else if (m_files.erase(path) != 0) {
      EXPECT_TRUE(::DeleteFileW(path.c_str()));
    }
  }

  List ExpectedList() const {
    List list{L"Four:1033="};
    for (const auto& [path, title] : m_files) {
      list.insert(title);
    }
    if (list.count(m_titles[1]) == 0) {
      list.insert(L"Two:1033=");  // from the gallery
    }
    return list;
  }

  const wchar_t* m_titles[4] = {L"One:1033=Title of One", L"Two:1033=Title of Two",
                                L"Three:0=Title of Three", nullptr};
  std::wstring m_templates[4];
  std::map<std::wstring, std::wstring> m_files;  ///< what each is listed as
  std::minstd_rand m_random{7};
};

TEST_F(CatalogSoakTest, AThousandRefreshesLeaveNothing) {
  m_templates[0] = WriteModule(L"spare\\1", "One");
  m_templates[1] = WriteModule(L"spare\\2", "Two");
  m_templates[2] = WriteModule(L"spare\\3", "Three", "3.0", 0);
  m_templates[3] = m_folder / L"spare\\4";
  WriteText(L"spare\\4", "no module");
  WriteDescription(L"two", "Two");
  WriteDescription(L"four", "Four");
  WriteText(L"a\\1.txt", "");
  WriteText(L"b\\1.txt", "");
  Soak(1000);
}

}  // namespace

}  // namespace qm::tests
