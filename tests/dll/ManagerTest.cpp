#include "common/Bstr.h"
#include "idl/host.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"
#include "tests/support/ErrorObject.h"

namespace qm::tests {

namespace {

/// An object of the host with a virtual table of its own, slot by slot: all of them fail but those
/// of IUnknown and one method, which has one out parameter.
class HostObject {
 public:
  using Method = HRESULT(STDMETHODCALLTYPE*)(HostObject*, void*);

  HostObject(REFIID iid, size_t slot, Method method) : m_iid(iid) {
    std::fill(std::begin(m_slots), std::end(m_slots), reinterpret_cast<void*>(&WrongSlot));
    m_slots[0] = reinterpret_cast<void*>(&QueryInterface);
    m_slots[1] = reinterpret_cast<void*>(&AddRef);
    m_slots[2] = reinterpret_cast<void*>(&Release);
    m_slots[slot] = reinterpret_cast<void*>(method);
  }

  IUnknown* Get() { return reinterpret_cast<IUnknown*>(this); }

 private:
  static HRESULT STDMETHODCALLTYPE QueryInterface(HostObject* self, const IID& iid, void** out) {
    const bool known = iid == __uuidof(IUnknown) || iid == self->m_iid;
    *out = known ? self : nullptr;
    self->references += known;
    return known ? S_OK : E_NOINTERFACE;
  }
  static ULONG STDMETHODCALLTYPE AddRef(HostObject* self) { return ++self->references; }
  static ULONG STDMETHODCALLTYPE Release(HostObject* self) { return --self->references; }
  static HRESULT STDMETHODCALLTYPE WrongSlot(HostObject*, void*) { return E_NOTIMPL; }

  [[maybe_unused]] void** m_table = m_slots;  // first, where callers look for it
  IID m_iid;
  void* m_slots[60];

 public:
  ULONG references = 1;
  HRESULT answer = S_OK;           ///< of the method
  const wchar_t* story = nullptr;  ///< description of the error object that the method leaves
  HostObject* settings = nullptr;  ///< returned by a project
  long kind = 0;                   ///< returned by settings

  HRESULT Answer() const {
    if (story) {
      LeaveErrorObject(story);
    }
    return answer;
  }
};

HRESULT STDMETHODCALLTYPE GetSettings(HostObject* self, void* out) {
  if (self->settings && SUCCEEDED(self->answer)) {
    self->settings->Get()->AddRef();
    *static_cast<HostObject**>(out) = self->settings;
  }
  return self->Answer();
}

HRESULT STDMETHODCALLTYPE GetKind(HostObject* self, void* out) {
  *static_cast<long*>(out) = self->kind;
  return self->Answer();
}

class ManagerTest : public CatalogFixture {
 protected:
  common::ComPtr<IMMCatalogCaskel> NewScriptCatalog() const {
    return m_server.Create<IMMCatalogCaskel>(CLSID_MMCatalogPro);
  }

  HostObject m_settings{__uuidof(IHostProjectSettings), 42, &GetKind};
  HostObject m_project{__uuidof(IHostProject), 14, &GetSettings};
};

TEST_F(ManagerTest, HandsOutOneCatalogPerKindOfProject) {
  const auto manager = m_server.Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager);
  common::ComPtr<IUnknown> ofScripts, ofOthers;
  EXPECT_EQ(S_OK, manager->GetCatalog(9, ofScripts.Put()));
  EXPECT_EQ(S_OK, manager->GetCatalog(1, ofOthers.Put()));
  EXPECT_NE(ofScripts.Get(), ofOthers.Get());
  for (const long kind : {9L, 10L, 0L, 1L, 3L, 11L, -1L, -9L, LONG_MIN}) {
    SCOPED_TRACE(kind);
    common::ComPtr<IUnknown> catalog, identity;
    EXPECT_EQ(S_OK, manager->GetCatalog(kind, catalog.Put()));
    EXPECT_EQ(kind == 9 || kind == 10 ? ofScripts.Get() : ofOthers.Get(), catalog.Get());
    EXPECT_EQ(S_OK, catalog.QueryInterface(identity.Put()));
    EXPECT_EQ(catalog.Get(), identity.Get());
  }
  EXPECT_EQ(E_INVALIDARG, manager->GetCatalog(9, nullptr));
  EXPECT_EQ(E_INVALIDARG, manager->GetCatalog(0, nullptr));
  // A catalog that was handed out outlives the manager; another manager has others.
  common::ComPtr<IUnknown> ofAnother;
  EXPECT_EQ(S_OK, m_server.Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager)
                      ->GetCatalog(1, ofAnother.Put()));
  EXPECT_NE(ofAnother.Get(), ofOthers.Get());
  common::ComPtr<IMMCatalog> catalog;
  EXPECT_EQ(S_OK, ofAnother.QueryInterface(catalog.Put()));
  EXPECT_EQ(L"", KeysOf(catalog.Get()));
}

TEST_F(ManagerTest, TheScriptCatalogDoesNothing) {
  SetSearchPath(L"*a");
  WriteModule(L"a\\1.msm", "One");
  const auto catalog = NewScriptCatalog();
  IMMCatalogCaskel* const object = catalog.Get();
  long results[] = {1, 2, 3};
  EXPECT_EQ(S_OK, catalog->Reserved1(5, 6, &results[0]));
  EXPECT_EQ(S_OK, catalog->Reserved2(5, &results[1]));
  EXPECT_EQ(S_OK, catalog->Refresh(&results[2]));
  EXPECT_THAT(results, testing::Each(0));

  // The others leave what they are given, whatever it is. Slots by their number of arguments.
  long untouched = 7;
  for (void* const any : {static_cast<void*>(&untouched), static_cast<void*>(nullptr)}) {
    for (const size_t slot : {4, 5, 7, 9, 15}) {
      EXPECT_EQ(S_OK, CallSlot(object, slot, any)) << slot;
    }
    for (const size_t slot : {8, 12, 13}) {
      EXPECT_EQ(S_OK, CallSlot(object, slot, any, any)) << slot;
    }
    for (const size_t slot : {6, 11}) {
      EXPECT_EQ(S_OK, CallSlot(object, slot, any, any, any, any, any)) << slot;
    }
    EXPECT_EQ(S_OK, CallSlot(object, 10, VARIANT{}, any, any));
  }
  EXPECT_EQ(7, untouched);
}

TEST_F(ManagerTest, EachCatalogSupportsItsKindsOfProject) {
  const struct {
    long kind;
    bool byCatalog;
    bool byScriptCatalog;
  } cases[] = {{1, true, false},  {3, true, false},  {9, false, true},   {10, false, false},
               {2, false, false}, {0, false, false}, {-1, false, false}, {11, false, false}};
  m_project.settings = &m_settings;
  for (const auto& [kind, byCatalog, byScriptCatalog] : cases) {
    SCOPED_TRACE(kind);
    m_settings.kind = kind;
    VARIANT_BOOL supported = 5;
    EXPECT_EQ(S_OK, NewCatalog()->SupportsProject(m_project.Get(), &supported));
    EXPECT_EQ(byCatalog ? VARIANT_TRUE : VARIANT_FALSE, supported);
    supported = 5;
    EXPECT_EQ(S_OK, NewScriptCatalog()->SupportsProject(m_project.Get(), &supported));
    EXPECT_EQ(byScriptCatalog ? VARIANT_TRUE : VARIANT_FALSE, supported);
  }
  EXPECT_EQ(1u, m_project.references);
  EXPECT_EQ(1u, m_settings.references);
}

TEST_F(ManagerTest, AProjectWhoseKindCannotBeReadIsAFailure) {
  const HRESULT closed = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x234);
  m_settings.kind = 1;
  const struct {
    const char* what;
    IUnknown* project;
    HRESULT ofSettings;
    HRESULT ofKind;
    bool hasSettings;
    HRESULT expected;
    const wchar_t* description;
  } cases[] = {
      {"no project", nullptr, S_OK, S_OK, true, E_INVALIDARG, L""},
      {"another object", m_settings.Get(), S_OK, S_OK, true, E_NOINTERFACE, nullptr},
      {"settings fail", m_project.Get(), closed, S_OK, true, closed, L"The project is closed."},
      {"kind fails", m_project.Get(), S_OK, closed, true, closed, L"The kind is not known."},
      {"no settings", m_project.Get(), S_OK, S_OK, false, E_UNEXPECTED,
       L"The project has no settings."},
      {"success of another kind", m_project.Get(), S_FALSE, S_FALSE, true, S_OK, L""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    m_project.answer = c.ofSettings;
    m_project.story = c.ofSettings == closed ? L"The project is closed." : nullptr;
    m_project.settings = c.hasSettings ? &m_settings : nullptr;
    m_settings.answer = c.ofKind;
    m_settings.story = c.ofKind == closed ? L"The kind is not known." : nullptr;
    for (const auto& catalog : {NewCatalog(), NewScriptCatalog()}) {
      VARIANT_BOOL supported = 5;
      EXPECT_EQ(c.expected, catalog->SupportsProject(c.project, &supported));
      EXPECT_TRUE(supported == VARIANT_TRUE || SUCCEEDED(c.expected));
      const std::wstring description = TakeDescription();
      if (c.description) {
        EXPECT_EQ(c.description, description);
      } else {
        EXPECT_NE(L"", description);
      }
    }
    EXPECT_EQ(1u, m_project.references);
    EXPECT_EQ(1u, m_settings.references);
  }
  for (const auto& catalog : {NewCatalog(), NewScriptCatalog()}) {
    EXPECT_EQ(E_INVALIDARG, catalog->SupportsProject(m_project.Get(), nullptr));
    EXPECT_EQ(E_INVALIDARG, catalog->SupportsProject(nullptr, nullptr));
    EXPECT_EQ(S_OK, catalog->put_Option(VARIANT_FALSE));
  }
}

}  // namespace

}  // namespace qm::tests
