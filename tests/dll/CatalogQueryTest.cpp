#include "common/Bstr.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"

namespace {

using testing::PrintToString;

CUniqueBstr Text(const wchar_t* text) { return CUniqueBstr(::SysAllocString(text)); }

class CatalogQueryTest : public CCatalogTest {
 protected:
  void SetUp() override {
    CCatalogTest::SetUp();
    SetSearchPath(L"*a");
    WriteModule(L"a\\1.msm", "Alpha", "1.0", 1031);
    WriteModule(L"a\\2.msm", "Alpha", "2.0RC", 1033);
    WriteModule(L"a\\3.msm", "aLPHA", "2.0rc", 0);
    WriteModule(L"a\\4.msm", "Beta", "1.0", -5);
    WriteText(L"a\\5.msm", "damaged");
    m_catalog = NewCatalog();
  }
  void TearDown() override {
    m_catalog.Release();
    CCatalogTest::TearDown();
  }

  /// The keys of the modules that CatalogQuery finds; a failure's HRESULT.
  std::wstring Query(VARIANT query) const {
    CVariant count(L"what was in the variable"), modules;
    const HRESULT hr = m_catalog->CatalogQuery(query, &count, &modules);
    EXPECT_EQ(FAILED(hr) ? VT_BSTR : VT_I4, count.vt);
    EXPECT_EQ(FAILED(hr) ? VT_EMPTY : VT_DISPATCH, modules.vt);
    if (FAILED(hr)) {
      return FailureText(hr, L"");
    }
    CComPtr<IMergeModules> list;
    long inList = -1;
    modules.pdispVal->QueryInterface(__uuidof(IMergeModules), reinterpret_cast<void**>(list.Put()));
    list->get_Count(&inList);
    EXPECT_EQ(inList, count.lVal);
    return KeysOf(list.Get());
  }

  CComPtr<IMMCatalogCaskel> m_catalog;
};

TEST_F(CatalogQueryTest, FindsModulesByIdLanguageAndVersion) {
  const std::wstring long1(100000, L'A'), long2 = L"Alpha:" + long1;
  const wchar_t* const alphas = L"Alpha:1031 Alpha:1033 aLPHA:0";
  const struct {
    const wchar_t* key;
    const wchar_t* version;
    const wchar_t* found;
    const wchar_t* inAllLanguages;
  } cases[] = {
      {L"Alpha", L"", alphas, alphas},
      {L"ALPHA", nullptr, alphas, alphas},
      {L"Alpha:", L"", alphas, alphas},
      {L"alpha:1033", L"", L"Alpha:1033", alphas},
      {L"Alpha:0", L"", L"aLPHA:0", alphas},
      {L"Alpha:01033", L"", L"", alphas},
      {L"Alpha:1033:", L"", L"", alphas},
      {L"Beta:-5", L"1.0", L"Beta:-5", L"Beta:-5"},
      {L"Alpha", L"2.0Rc", L"Alpha:1033 aLPHA:0", L"Alpha:1033 aLPHA:0"},
      {L"Alpha:1031", L"2.0rc", L"", L"Alpha:1033 aLPHA:0"},
      {L"Alpha", L"1", L"", L""},
      {L"Alph", L"", L"", L""},
      {L" Alpha", L"", L"", L""},
      {L"Gamma", L"1.0", L"", L""},
      {nullptr, nullptr, L"?", L"?"},  // the file without an ID
      {L"", L"", L"?", L"?"},
      {L":", L"", L"?", L"?"},
      {L":1033", L"", L"", L"?"},
      {L"", L"1.0", L"", L""},
      {long1.c_str(), L"", L"", L""},
      {long2.c_str(), long1.c_str(), L"", L""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(PrintToString(std::wstring(c.key ? c.key : L"(null)").substr(0, 20)));
    for (const long flags : {0L, 1L, -1L}) {
      CComPtr<IMergeModules> modules, inAllLanguages;
      long count = -1, countOfAll = -1;
      CUniqueBstr key = Text(c.key);
      BSTR keyByReference = key.Get();
      EXPECT_EQ(S_OK, m_catalog->FindModule(key.Get(), Text(c.version).Get(), flags, modules.Put(),
                                            &count));
      EXPECT_EQ(S_OK, m_catalog->FindModules(&keyByReference, Text(c.version).Get(), flags,
                                             inAllLanguages.Put(), &countOfAll));
      EXPECT_EQ(c.found, KeysOf(modules.Get()));
      EXPECT_EQ(c.inAllLanguages, KeysOf(inAllLanguages.Get()));
      long inList = -1;
      modules->get_Count(&inList);
      EXPECT_EQ(inList, count);
      inAllLanguages->get_Count(&inList);
      EXPECT_EQ(inList, countOfAll);
    }
    // As scripts ask: with a text, or an array of key and version.
    CVariant key(c.key);
    if (!c.version || !*c.version) {
      EXPECT_EQ(c.found, Query(key));
    }
    SAFEARRAY* const texts = ::SafeArrayCreateVector(VT_BSTR, 1, 2);
    for (LONG index : {1L, 2L}) {
      ::SafeArrayPutElement(texts, &index, Text(index == 1 ? c.key : c.version).Get());
    }
    EXPECT_EQ(c.found, Query(Around(VT_ARRAY | VT_BSTR, texts)));
    ::SafeArrayDestroy(texts);
  }
  const CUniqueBstr withZero(::SysAllocStringLen(L"Alpha\0:1031", 11));
  EXPECT_EQ(L"", Query(Around(VT_BSTR, withZero.Get())));
}

TEST_F(CatalogQueryTest, NullPointersAreRefused) {
  CComPtr<IMergeModules> modules;
  long count = 7;
  CVariant query(L"Beta"), result;
  BSTR key = query.bstrVal;
  EXPECT_EQ(E_POINTER, m_catalog->FindModule(key, nullptr, 0, nullptr, &count));
  EXPECT_EQ(E_POINTER, m_catalog->FindModule(key, nullptr, 0, modules.Put(), nullptr));
  EXPECT_EQ(E_POINTER, m_catalog->FindModules(&key, nullptr, 0, nullptr, &count));
  EXPECT_EQ(E_POINTER, m_catalog->FindModules(&key, nullptr, 0, modules.Put(), nullptr));
  auto* leftover = reinterpret_cast<IMergeModules*>(this);
  EXPECT_EQ(E_POINTER, m_catalog->FindModules(nullptr, nullptr, 0, &leftover, &count));
  EXPECT_EQ(nullptr, leftover);
  EXPECT_EQ(0, count);
  EXPECT_EQ(E_POINTER, m_catalog->CatalogQuery(query, &result, nullptr));
  EXPECT_EQ(E_POINTER, m_catalog->get_Sources(nullptr));
  EXPECT_EQ(E_POINTER, m_catalog->get_MergeModules(nullptr));
  EXPECT_EQ(E_POINTER, m_catalog->GetModuleForFile(key, nullptr));
  EXPECT_EQ(E_POINTER, m_catalog->GetModuleDisplayName(key, nullptr));
}

TEST_F(CatalogQueryTest, AQueryIsATextOrAnArrayOfTwo) {
  CVariant beta(L"Beta"), nothing;
  VARIANT byReference = Around(VT_VARIANT | VT_BYREF, &beta),
          twice = Around(VT_VARIANT | VT_BYREF, &byReference), itself;
  itself = Around(VT_VARIANT | VT_BYREF, &itself);
  const auto array = [](VARTYPE type, ULONG first, ULONG count, UINT dimensions = 1) {
    SAFEARRAYBOUND bounds[] = {{count, static_cast<LONG>(first)}, {1, 0}};
    return Around(VT_ARRAY | type, ::SafeArrayCreate(type, dimensions, bounds));
  };
  VARIANT pair = array(VT_VARIANT, 5, 2), number = array(VT_VARIANT, 0, 2), withArray = number;
  LONG index = 5;
  ::SafeArrayPutElement(pair.parray, &index, &beta);
  VARIANT pairByReference = Around(VT_ARRAY | VT_VARIANT | VT_BYREF, &pair.parray);
  index = 1;
  CVariant one(1);
  ::SafeArrayPutElement(number.parray, &index, &one);
  ::SafeArrayCopy(number.parray, &withArray.parray);
  ::SafeArrayPutElement(withArray.parray, &index, &pair);
  const std::pair<VARIANT, std::wstring> found[] = {
      {beta, L"Beta:-5"},
      {byReference, L"Beta:-5"},
      {twice, L"Beta:-5"},
      {pair, L"Beta:-5"},
      {pairByReference, L"Beta:-5"},
      {number, L""},
      {one, L""},
      {nothing, L"?"},
      {Around(VT_BSTR | VT_BYREF, &beta.bstrVal), L"Beta:-5"}};
  for (const auto& [query, keys] : found) {
    SCOPED_TRACE("type " + std::to_string(query.vt));
    EXPECT_EQ(keys, Query(query));
  }
  VARIANT arrays[] = {array(VT_VARIANT, 0, 0),    array(VT_VARIANT, 0, 1), array(VT_VARIANT, 0, 3),
                      array(VT_VARIANT, 0, 2, 2), array(VT_I4, 0, 2),      withArray};
  const VARIANT others[] = {itself,
                            Around(VT_VARIANT | VT_BYREF, nullptr),
                            Around(VT_BSTR | VT_BYREF, nullptr),
                            Around(VT_NULL, 0LL),
                            Around(VT_ERROR, DISP_E_PARAMNOTFOUND),
                            Around(VT_DISPATCH, nullptr),
                            Around(VT_UNKNOWN, m_catalog.Get()),
                            Around(VT_DISPATCH, m_catalog.Get()),
                            Around(VT_ARRAY | VT_VARIANT, nullptr)};
  for (const VARIANT& query : others) {
    SCOPED_TRACE("type " + std::to_string(query.vt));
    EXPECT_EQ(FailureText(E_INVALIDARG, L""), Query(query));
  }
  for (VARIANT& query : arrays) {
    SCOPED_TRACE("array " + std::to_string(&query - arrays));
    EXPECT_EQ(FailureText(E_INVALIDARG, L""), Query(query));
    ::SafeArrayDestroy(query.parray);
  }
  ::SafeArrayDestroy(pair.parray);
  ::SafeArrayDestroy(number.parray);
}

TEST_F(CatalogQueryTest, TheCountIsStoredInAVariableOfAnyKind) {
  CVariant beta(L"Beta"), variable(L"old");
  long number = 7;
  VARIANT toVariable = Around(VT_VARIANT | VT_BYREF, &variable),
          twice = Around(VT_VARIANT | VT_BYREF, &toVariable),
          toNumber = Around(VT_I4 | VT_BYREF, &number),
          leftOut = Around(VT_ERROR, DISP_E_PARAMNOTFOUND);
  for (VARIANT* count : {static_cast<VARIANT*>(nullptr), &leftOut, &twice, &toNumber}) {
    CVariant modules;
    EXPECT_EQ(S_OK, m_catalog->CatalogQuery(beta, count, &modules));
  }
  EXPECT_EQ(VT_ERROR, leftOut.vt);
  EXPECT_EQ(VT_I4, variable.vt);
  EXPECT_EQ(1, variable.lVal);
  EXPECT_EQ(1, number);
  // One variable for both, as a script may pass it.
  CVariant both(L"Beta"), modules;
  EXPECT_EQ(S_OK, m_catalog->CatalogQuery(Around(VT_VARIANT | VT_BYREF, &both), &both, &modules));
  EXPECT_EQ(VT_I4, both.vt);
  EXPECT_EQ(1, both.lVal);
}

TEST_F(CatalogQueryTest, GettingTheListReleasesTheOneThatTheCallerHeld) {
  IMergeModules* list = nullptr;
  long count = 0;
  m_catalog->FindModule(Text(L"Beta").Get(), nullptr, 0, &list, &count);
  for (int time = 1; time <= 3; ++time) {
    EXPECT_EQ(S_OK, m_catalog->get_MergeModules(&list));
    EXPECT_EQ(L"? Alpha:1031 Alpha:1033 Beta:-5 aLPHA:0", KeysOf(list));
  }
  EXPECT_EQ(2u, list->AddRef() - 1) << "one of the catalog, one of the caller";
  list->Release();
  list->Release();
}

/// The index tables are read by the first catalog of the process, before the test begins.
class CatalogIndexTest : public CCatalogTest {
 protected:
  void Settle() override {
    const std::wstring folder = m_folder / L"index";
    WriteIndexes("");
    ::SetEnvironmentVariableW(L"QM_MODULE_INDEX_DIR", folder.c_str());
    ::SetEnvironmentVariableW(L"QM_FILE_INDEX_DIR", (folder + L"\\").c_str());
    CCatalogTest::Settle();
  }

  /// Writes the index files, with `mark` behind every module ID and display name.
  void WriteIndexes(const std::string& mark) const {
    const auto write = [&](const wchar_t* name, std::string text) {
      for (size_t at = 0; (at = text.find('*', at)) != std::string::npos;) {
        text.replace(at, 1, mark);
      }
      WriteText(name, "\xEF\xBB\xBF" + text);
    };
    write(L"index\\modules.ini",
          "[other]\r\nAlpha:1033=No\r\n[modules]\r\nAlpha:1033=Name of \xC3\x84lpha*\r\n"
          "Empty:0=\r\nbeta:0=No\r\nBeta:0=First\r\nBeta:0=Second*\r\n");
    write(L"index\\FilesToModules.ini",
          "[filestomodules]\r\na.dll=0:Mod.A*\r\nb.dll=0:Mod.B*:1033\r\nc.dll=1:Mod.C\r\n"
          "d.dll=Mod.D\r\nUpper.dll=0:No\r\ne.dll=0:No\r\ne.dll=0:Mod.E*\r\nf.dll=\r\n"
          "g.dll=00:No\r\nbare.dll=0:\r\nboth.dll=1:No\r\n\xC3\xA4.dll=0:Mod.\xC3\x84*\r\n=0:No\r\n"
          "[x]\r\nx.dll=0:No\r\n");
    write(L"index\\PlatformFilesToModules.ini",
          "[PlatformFilesToModules]\r\nx.dll=0:No\r\n[PlatformFileToModule]\r\np.dll=Mod.P*\r\n"
          "q.dll=Mod.Q*:1031\r\nr.dll=0:Mod.R*\r\ns.dll=1:No\r\nt.dll=12:No:0\r\nu.dll=\r\n"
          "a.dll=No\r\nboth.dll=Mod.No\r\n");
  }
};

TEST_F(CatalogIndexTest, AnswersFromTheIndexFilesThatTheProcessReadFirst) {
  const std::pair<const wchar_t*, std::vector<const wchar_t*>> modules[] = {
      {L"Mod.A:0", {L"a.dll", L"A.Dll", L"C:\\Some folder\\A.DLL", L"c:/x/a.dll", L"x:a.dll"}},
      {L"Mod.\u00C4:0", {L"\u00C4.DLL"}},
      {L"Mod.B:1033", {L"b.dll"}},
      {L"Mod.E:0", {L"e.dll"}},
      {L":0", {L"bare.dll"}},
      {L"Mod.P:0", {L"P.DLL"}},
      {L"Mod.Q:1031", {L"C:\\q.dll"}},
      {L"Mod.R:0", {L"r.dll"}},
      {L"",
       {L"c.dll", L"d.dll", L"upper.dll", L"Upper.dll", L"f.dll", L"g.dll", L"x.dll", L"both.dll",
        L"s.dll", L"t.dll", L"u.dll", L" a.dll", L"C:\\a.dll\\", L"", nullptr}}};
  const std::pair<const wchar_t*, const wchar_t*> names[] = {
      {L"Alpha:1033", L"Name of \u00C4lpha"},
      {L"alpha:1033", L"alpha:1033"},
      {L"Alpha", L"Alpha"},
      {L"Beta:0", L"Second"},
      {L"Empty:0", L""},
      {L"", L""},
      {nullptr, L""},
  };
  SetSearchPath(L"*a");
  WriteModule(L"a\\1.msm", "Alpha");
  WriteModule(L"a\\2.msm", "Gamma");
  for (const char* mark : {"", " changed"}) {
    SCOPED_TRACE(mark);
    WriteIndexes(mark);
    const auto catalog = NewCatalog();
    for (const auto& [module, files] : modules) {
      for (const wchar_t* file : files) {
        SCOPED_TRACE(PrintToString(std::wstring(file ? file : L"(null)")));
        CUniqueBstr key;
        EXPECT_EQ(S_OK, catalog->GetModuleForFile(Text(file).Get(), key.Put()));
        EXPECT_TRUE(key);
        EXPECT_EQ(module, ViewOf(key.Get()));
      }
    }
    for (const auto& [key, expected] : names) {
      SCOPED_TRACE(PrintToString(std::wstring(key ? key : L"(null)")));
      CUniqueBstr name;
      EXPECT_EQ(S_OK, catalog->GetModuleDisplayName(Text(key).Get(), name.Put()));
      EXPECT_EQ(expected, ViewOf(name.Get()));
    }
    const CComPtr<IMergeModules> list = ModulesOf(catalog.Get());
    EXPECT_EQ(L"Name of \u00C4lpha", ReadModule(ModuleAt(list.Get(), 1).Get(), L"DisplayName"));
    EXPECT_EQ(L"Title of Gamma", ReadModule(ModuleAt(list.Get(), 2).Get(), L"DisplayName"));
  }
}

}  // namespace
