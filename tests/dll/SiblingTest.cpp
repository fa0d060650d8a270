#include "idl/siblings.h"
#include "tests/support/Answers.h"
#include "tests/support/ServerFixture.h"
#include "tests/support/TestGallery.h"

namespace qm::tests {

namespace {

using testing::StartsWith;

/// The expected answers about the gallery, one letter for each of kQuestions:
///   w  as without a fault
///   -  as without a description
///   a  as for a module without a file
///   e  one download file without any texts
///   f  the failure of a sibling, in its own words
///   c  the same, under the name of its DLL
///   u  E_UNEXPECTED, under the name of the DLL
using Outcome = const char*;

const wchar_t* const kQuestions[] = {L"Present", L"NeedsDownload", L"DownloadFiles", L"LocalPath"};

/// The server in a folder of its own with siblings of the test's choice: the product's or one that
/// misbehaves, see tests/fakes/Sibling.cpp.
class SiblingTest : public ServerFixture {
 protected:
  SiblingTest() {
    m_serverPath = m_folder / L"QmMMUpdater2.dll";
    for (const wchar_t* const file :
         {L"QmMMUpdater2.dll", L"qmmmupdater.tlb", L"Gleaner.dll", L"QmAppServices.dll"}) {
      Put(file, file);
    }
  }
  void TearDown() override {
    Misbehave(nullptr);
    ServerFixture::TearDown();
    FreeSiblings();
  }

  /// Puts a file of the program's folder beside the server under another name.
  void Put(const std::wstring& name, const wchar_t* source) {
    std::filesystem::copy_file(ProgramFolder() / source, m_folder / name,
                               std::filesystem::copy_options::overwrite_existing);
  }
  static void Misbehave(const wchar_t* fault) {
    ::SetEnvironmentVariableW(L"QM_SIBLING_FAULT", fault);
  }

  /// Frees siblings that stay loaded because they cannot report whether they are idle.
  void FreeSiblings() const {
    for (const wchar_t* const dll : {L"Gleaner.dll", L"QmAppServices.dll"}) {
      while (const HMODULE left = ::GetModuleHandleW((m_folder / dll).c_str())) {
        ::FreeLibrary(left);
      }
    }
  }

  void ExpectAnswers(IMergeModuleTavik* module, const std::wstring& dll, Outcome outcome) const {
    const std::wstring story = L"The sibling is out of order.";
    std::wstring namedStory = dll;
    namedStory += L": " + story;
    // Of the product's reader and of the one that misbehaves.
    const bool ownReader = dll != L"Gleaner.dll";
    const std::wstring whole[] = {
        L"True", L"True", ownReader ? TestGallery::kDownloadFiles : kItemOfTheSibling, m_rich};
    const std::wstring undescribed[] = {L"True", L"False", L"", L""};
    const std::wstring absent[] = {L"False", L"False", L"", L""};
    for (size_t i = 0; i < std::size(kQuestions); ++i) {
      SCOPED_TRACE(testing::PrintToString(std::wstring(kQuestions[i])));
      const std::wstring answer = ReadModule(module, kQuestions[i]);
      switch (outcome[i]) {
        case 'f':
          EXPECT_EQ(FailureText(static_cast<HRESULT>(0x80041234), story), answer);
          break;
        case 'c':
          EXPECT_EQ(FailureText(static_cast<HRESULT>(0x80041234), namedStory), answer);
          break;
        case 'u':
          EXPECT_THAT(answer, StartsWith(FailureText(E_UNEXPECTED, dll + L": ")));
          break;
        case 'e':
          EXPECT_EQ(L";;;0;", answer);
          break;
        default:
          EXPECT_EQ((outcome[i] == 'w'   ? whole
                     : outcome[i] == '-' ? undescribed
                                         : absent)[i],
                    answer);
          EXPECT_EQ(L"", TakeDescription()) << "what was dropped left an error object";
      }
    }
  }

  /// The only download file that the misbehaving reader describes.
  static constexpr wchar_t kItemOfTheSibling[] = L"rich.msm;rich.msm;rich.msm;0;rich.msm";

  TestGallery m_gallery{m_folder};
};

TEST_F(SiblingTest, EachFaultOfTheReaderHasItsOutcome) {
  Put(L"Gleaner.dll", L"sibling.dll");
  const struct {
    const wchar_t* fault;
    Outcome outcome;
  } cases[] = {
      {nullptr, "wwww"},
      {L"Sections fails", "ffff"},
      {L"Section fails", "ffff"},
      {L"Keys fails", "ffff"},
      {L"KeyByName fails", "ffff"},
      {L"Count fails", "ffff"},
      {L"KeyByNumber fails", "ffwf"},
      {L"ValueByNumber fails", "ffwf"},
      {L"Value fails", "--e-"},
      {L"Sections null", "uuuu"},
      {L"Section null", "----"},
      {L"Keys null", "uuuu"},
      {L"KeyByName null", "--e-"},
      {L"KeyByNumber null", "wwww"},
      {L"ValueByNumber null", "wwww"},
      {L"Value null", "--e-"},
      // The description cannot be opened.
      {L"Load fails", "----"},
      {L"CreateInstance fails", "----"},
      {L"CreateInstance null", "----"},
      {L"DllGetClassObject fails", "----"},
      {L"DllGetClassObject null", "----"},
  };
  for (const auto& [fault, outcome] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(fault ? fault : L"none")));
    Misbehave(fault);
    ExpectAnswers(OpenModule(m_rich).Get(), L"Gleaner.dll", outcome);
    ExpectNothingLeft();
  }
}

TEST_F(SiblingTest, EachFaultOfTheApplicationServicesHasItsOutcome) {
  Put(L"QmAppServices.dll", L"sibling.dll");
  const struct {
    const wchar_t* fault;
    Outcome outcome;
    Outcome opened;  ///< when the fault begins after the description was opened
  } cases[] = {
      {nullptr, "wwww", "wwww"},
      {L"GalleryRoot fails", "----", "ffwf"},
      {L"GalleryRoot null", "----", "awww"},
      {L"ModuleSearchPath fails", "ffwf", "ffwf"},
      {L"ModuleSearchPath null", "aawa", "aawa"},
      {L"CreateInstance fails", "----", "ccwc"},
      {L"CreateInstance null", "----", "uuwu"},
      {L"DllGetClassObject fails", "----", "ccwc"},
      {L"DllGetClassObject null", "----", "uuwu"},
  };
  for (const auto& [fault, outcome, opened] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(fault ? fault : L"none")));
    Misbehave(fault);
    ExpectAnswers(OpenModule(m_rich).Get(), L"QmAppServices.dll", outcome);
    Misbehave(nullptr);
    const common::ComPtr<IMergeModuleTavik> module = OpenModule(m_rich);
    ReadModule(module.Get(), L"DownloadFiles");
    Misbehave(fault);
    ExpectAnswers(module.Get(), L"QmAppServices.dll", opened);
    // A failure is not kept: the next question checks again.
    Misbehave(nullptr);
    ExpectAnswers(module.Get(), L"QmAppServices.dll", opened[0] == 'a' ? opened : "wwww");
  }
}

TEST_F(SiblingTest, TheServerAndItsSiblingsFreeTheirThreadSlots) {
  const auto nextFreeSlot = [] {
    const DWORD slot = ::TlsAlloc();
    ::TlsFree(slot);
    return slot;
  };
  m_server.Unload();
  const DWORD freeSlot = nextFreeSlot();
  for (int round = 0; round < 10; ++round) {
    m_server.Load(m_serverPath);
    EXPECT_EQ(L"True", ReadModule(OpenModule(m_rich).Get(), L"Present"));
    ComDll fourth((ProgramFolder() / L"Corvane8.dll").wstring());
    EXPECT_TRUE(fourth.Create<IUnknown>(CLSID_RepositoryMgr));
    EXPECT_NE(freeSlot, nextFreeSlot());
    EXPECT_EQ(S_OK, m_server.DllCanUnloadNow());
    EXPECT_EQ(nullptr, ::GetModuleHandleW(L"Gleaner.dll")) << "still loaded";
    m_server.Unload();
    fourth.Unload();
    EXPECT_EQ(freeSlot, nextFreeSlot());
  }
  m_server.Load(m_serverPath);
  Settle();
}

int g_failuresTraced = 0;

LONG CALLBACK CountTracedFailures(EXCEPTION_POINTERS* pointers) {
  constexpr DWORD debugPrint = 0x40010006;
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode == debugPrint) {
    const auto* const text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    g_failuresTraced += std::string_view(text) == "\nException caught: ";
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

TEST_F(SiblingTest, ACatalogThatCannotBeCreatedReportsItOnceAndUnderItsClass) {
  Put(L"QmAppServices.dll", L"sibling.dll");
  ASSERT_EQ(S_OK, m_server.DllRegisterServer());
  m_server.Factory(CLSID_MMCatalog);
  m_server.Factory(CLSID_MMCatalogManager);
  Settle();  // both factories stay
  const auto manager = m_server.Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager);
  const common::ComPtr<IClassFactory> factory = m_server.Factory(CLSID_MMCatalog);
  Misbehave(L"ModuleSearchPath fails");
  for (const bool byFactory : {true, false}) {
    SCOPED_TRACE(byFactory);
    common::ComPtr<IUnknown> catalog;
    g_failuresTraced = 0;
    void* const observer = ::AddVectoredExceptionHandler(TRUE, &CountTracedFailures);
    const HRESULT hr = byFactory ? factory->CreateInstance(nullptr, __uuidof(IUnknown),
                                                           reinterpret_cast<void**>(catalog.Put()))
                                 : manager->GetCatalog(1, catalog.Put());
    ::RemoveVectoredExceptionHandler(observer);
    EXPECT_EQ(static_cast<HRESULT>(0x80041234), hr);
    EXPECT_FALSE(catalog);
    EXPECT_EQ(1, g_failuresTraced);
    EXPECT_EQ(L"QmMMUpdater.MMCatalog.1", TakeSource());
  }
  EXPECT_EQ(S_OK, m_server.DllUnregisterServer());
}

TEST_F(SiblingTest, WithoutASiblingAModuleHasNoDescription) {
  for (const wchar_t* const dll : {L"Gleaner.dll", L"QmAppServices.dll"}) {
    // No file, a file that is not a DLL, a DLL without class objects.
    for (const wchar_t* const file : {L"", L"qmmmupdater.tlb", L"QMObjMgr.DLL"}) {
      SCOPED_TRACE(testing::PrintToString(std::wstring(dll) + L" " + file));
      m_server.Unload();
      FreeSiblings();
      std::filesystem::remove(m_folder / dll);
      if (*file) {
        Put(dll, file);
      }
      m_server.Load(m_serverPath);
      ExpectAnswers(OpenModule(m_rich).Get(), dll, "----");
    }
    m_server.Unload();
    FreeSiblings();
    Put(dll, dll);
    m_server.Load(m_serverPath);
    ExpectAnswers(OpenModule(m_rich).Get(), L"", "wwww");
  }
  Settle();
}

}  // namespace

}  // namespace qm::tests
