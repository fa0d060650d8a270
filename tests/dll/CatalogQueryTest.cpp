#include "common/Bstr.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"

namespace qm::tests {

namespace {

using testing::PrintToString;

common::UniqueBstr Text(const wchar_t* text) { return common::UniqueBstr(::SysAllocString(text)); }

class CatalogQueryTest : public CatalogFixture {
 protected:
  void SetUp() override {
    CatalogFixture::SetUp();
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
    CatalogFixture::TearDown();
  }

  /// The keys of the modules that CatalogQuery finds; a failure's HRESULT.
  std::wstring Query(VARIANT query) const {
    Variant count(L"what was in the variable"), modules;
    const HRESULT hr = m_catalog->CatalogQuery(query, &count, &modules);
    EXPECT_EQ(FAILED(hr) ? VT_BSTR : VT_I4, count.vt);
    EXPECT_EQ(FAILED(hr) ? VT_EMPTY : VT_DISPATCH, modules.vt);
    if (FAILED(hr)) {
      return FailureText(hr, L"");
    }
    common::ComPtr<IMergeModules> list;
    long inList = -1;
    modules.pdispVal->QueryInterface(__uuidof(IMergeModules), reinterpret_cast<void**>(list.Put()));
    list->get_Count(&inList);
    EXPECT_EQ(inList, count.lVal);
    return KeysOf(list.Get());
  }

  common::ComPtr<IMMCatalogCaskel> m_catalog;
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
      common::ComPtr<IMergeModules> modules, inAllLanguages;
      long count = -1, countOfAll = -1;
      common::UniqueBstr key = Text(c.key);
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
    Variant key(c.key);
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
  const common::UniqueBstr withZero(::SysAllocStringLen(L"Alpha\0:1031", 11));
  EXPECT_EQ(L"", Query(Around(VT_BSTR, withZero.Get())));
}

TEST_F(CatalogQueryTest, NullPointersAreRefused) {
  common::ComPtr<IMergeModules> modules;
  long count = 7;
  Variant query(L"Beta"), result;
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
  Variant beta(L"Beta"), nothing;
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
  Variant one(1);
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
  Variant beta(L"Beta"), variable(L"old");
  long number = 7;
  VARIANT toVariable = Around(VT_VARIANT | VT_BYREF, &variable),
          twice = Around(VT_VARIANT | VT_BYREF, &toVariable),
          toNumber = Around(VT_I4 | VT_BYREF, &number),
          leftOut = Around(VT_ERROR, DISP_E_PARAMNOTFOUND);
  for (VARIANT* count : {static_cast<VARIANT*>(nullptr), &leftOut, &twice, &toNumber}) {
    Variant modules;
    EXPECT_EQ(S_OK, m_catalog->CatalogQuery(beta, count, &modules));
  }
  EXPECT_EQ(VT_ERROR, leftOut.vt);
  EXPECT_EQ(VT_I4, variable.vt);
  EXPECT_EQ(1, variable.lVal);
  EXPECT_EQ(1, number);
  // One variable for both, as a script may pass it.
  Variant both(L"Beta"), modules;
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

}  // namespace

}  // namespace qm::tests
