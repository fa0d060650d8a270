#include <atomic>
#include <functional>
#include <thread>

#include "common/Bstr.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"

namespace qm::tests {

namespace {

/// Starts a thread that runs `work` in a single-threaded apartment of its own. The test joins it.
std::thread StartApartment(std::function<void()> work) {
  return std::thread([work = std::move(work)] {
    EXPECT_EQ(S_OK, ::CoInitialize(nullptr));
    work();
    ::CoUninitialize();
  });
}

class Event {
 public:
  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() { ::CloseHandle(m_event); }
  void Set() const { ::SetEvent(m_event); }
  void Wait() const { EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(m_event, 10000)); }

 private:
  HANDLE m_event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

class ApartmentTest : public CatalogFixture {
 protected:
  void SetUp() override {
    CatalogFixture::SetUp();
    // The server's C library keeps memory for the largest number of threads that ran at once.
    std::atomic<int> threads = 0;
    RunInFour(
        [&] {
          NewCatalog();
          for (++threads; threads < 4;) {
            ::Sleep(1);
          }
        },
        [] {});
    Settle();
    ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_folder / L"gallery").c_str());
  }

  /// Does `work` in four apartments at once, and `meanwhile` in the test's own.
  template <class Work, class Meanwhile>
  static void RunInFour(Work work, Meanwhile meanwhile) {
    std::thread apartments[4];
    for (std::thread& apartment : apartments) {
      apartment = StartApartment(work);
    }
    meanwhile();
    for (std::thread& apartment : apartments) {
      apartment.join();
    }
  }

  /// What each of several apartments does with catalogs of its own while modules are added:
  /// everything succeeds, and lists have what was added before they were asked for.
  void Work(const std::atomic<bool>& isOver, const std::atomic<int>& added) const {
    for (int round = 0; !isOver; ++round) {
      const auto catalog = NewCatalog();
      ASSERT_TRUE(catalog);
      for (int call = 0; call < 5; ++call) {
        const int expected = 2 + added;
        const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
        long count = 0;
        EXPECT_EQ(S_OK, list->get_Count(&count));
        EXPECT_LE(expected, count);
        EXPECT_EQ(L"Rich.0A1B:1033", Find(catalog.Get(), L"rich.0a1b"));
        common::ComPtr<IMMSources> sources;
        EXPECT_EQ(S_OK, catalog->get_Sources(sources.Put()));
        const auto rich = ModuleOf(list.Get(), L"Rich.0A1B:1033");
        const auto described = ModuleOf(list.Get(), L"Described:0");
        ASSERT_TRUE(rich && described);
        EXPECT_EQ(L"ZuluDialog / AlphaDialog", ReadModule(rich.Get(), L"Dialogs"));
        EXPECT_EQ(L"False", ReadModule(described.Get(), L"Present"));
        EXPECT_EQ(L"there;;;7;", ReadModule(described.Get(), L"DownloadFiles"));
      }
    }
  }

  static common::ComPtr<IMergeModule> ModuleOf(IMergeModules* list, const wchar_t* key) {
    common::ComPtr<IMergeModule> module;
    EXPECT_EQ(S_OK, list->get_Item(Variant(key), module.Put()));
    return module;
  }
};

TEST_F(ApartmentTest, FourApartmentsListAChangingFolderWithoutLoss) {
  SetSearchPath(L"*a");
  BuildRichModule(PathOf(L"a\\rich.msm"));
  WriteText(L"gallery\\ObjectGallery\\x.ini",
            "[MergeModule]\r\nModuleID=Described\r\nFileName=x.msm\r\n[DownloadFiles]\r\n"
            "Key1=item\r\n[item]\r\nLocation=there\r\nFileSize=7\r\n");
  const std::wstring spare = WriteModule(L"spare\\1", "One");
  std::atomic<bool> isOver = false;
  std::atomic<int> added = 0;
  const auto addModules = [&] {
    const ULONGLONG end = ::GetTickCount64() + 2000;
    for (int number = 1; ::GetTickCount64() < end && !HasFailure(); ++number) {
      // Moved into the folder, so that nobody reads half of a file.
      const std::wstring name = std::to_wstring(number) + L".msm";
      EXPECT_TRUE(::CopyFileW(spare.c_str(), (spare + name).c_str(), TRUE));
      EXPECT_TRUE(::MoveFileW((spare + name).c_str(), PathOf(L"a\\" + name).c_str()));
      added = number;
      ::Sleep(10);
    }
    isOver = true;
  };
  RunInFour([&] { Work(isOver, added); }, addModules);
  EXPECT_LT(10, added);
}

/// Records the last thread that called its QueryInterface.
class Witness final : public IUnknown {
 public:
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    m_thread = ::GetCurrentThreadId();
    *out = iid == __uuidof(IUnknown) ? this : nullptr;
    return *out ? S_OK : E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }

  DWORD LastThread() const { return m_thread; }

 private:
  std::atomic<DWORD> m_thread = 0;
};

TEST_F(ApartmentTest, AnApartmentThatWaitsForAnothersRefreshAnswersItsCalls) {
  SetSearchPath(L"*a");
  WriteModule(L"a\\1.msm", "One");
  WatchOpenedFiles();
  const Event isRefreshing, isMarshaled;
  IStream* stream = nullptr;
  m_whenOpened = [&] {
    isRefreshing.Set();
    isMarshaled.Wait();
    ::Sleep(50);  // the other apartment waits now
    common::ComPtr<IUnknown> witness;
    EXPECT_EQ(S_OK, ::CoGetInterfaceAndReleaseStream(stream, __uuidof(IUnknown),
                                                     reinterpret_cast<void**>(witness.Put())));
    common::ComPtr<IDispatch> none;
    EXPECT_EQ(E_NOINTERFACE, witness.QueryInterface(none.Put()));
  };
  std::thread first = StartApartment([&] { EXPECT_EQ(L"One:1033", KeysOf(NewCatalog().Get())); });
  std::thread second = StartApartment([&] {
    isRefreshing.Wait();
    Witness witness;
    EXPECT_EQ(S_OK, ::CoMarshalInterThreadInterfaceInStream(__uuidof(IUnknown), &witness, &stream));
    isMarshaled.Set();
    EXPECT_EQ(L"One:1033", KeysOf(NewCatalog().Get()));
    EXPECT_EQ(::GetCurrentThreadId(), witness.LastThread());
    ::CoDisconnectObject(&witness, 0);
  });
  first.join();
  second.join();
}

}  // namespace

}  // namespace qm::tests
