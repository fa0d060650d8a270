#include <functional>
#include <optional>
#include <set>

#include "common/Bstr.h"
#include "idl/mergeset.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/InstallerTables.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class Interface>
std::wstring Text(const common::ComPtr<Interface>& object,
                  HRESULT (STDMETHODCALLTYPE Interface::*property)(BSTR*)) {
  common::UniqueBstr value;
  EXPECT_EQ(S_OK, (object.Get()->*property)(value.Put()));
  return std::wstring(common::ViewOf(value.Get()));
}

/// The items of a collection, through its enumerator.
template <class Item, class Collection>
std::vector<common::ComPtr<Item>> ItemsOf(const common::ComPtr<Collection>& collection) {
  std::vector<common::ComPtr<Item>> items;
  common::ComPtr<IUnknown> unknown;
  common::ComPtr<IEnumVARIANT> enumerator;
  EXPECT_EQ(S_OK, collection->get__NewEnum(unknown.Put()));
  EXPECT_EQ(S_OK, unknown.QueryInterface(enumerator.Put()));
  for (Variant value; enumerator->Next(1, &value, nullptr) == S_OK; ::VariantClear(&value)) {
    EXPECT_EQ(VT_DISPATCH, value.vt);
    common::ComPtr<Item> item;
    EXPECT_EQ(S_OK,
              value.pdispVal->QueryInterface(__uuidof(Item), reinterpret_cast<void**>(item.Put())));
    items.push_back(item);
  }
  return items;
}

/// Calls `use` with everything that can be reached from an object by properties without arguments
/// and by enumeration, each class once. Does not return to modules.
template <class Use>
void ForEachReachable(IDispatch* object, std::set<std::wstring>& seen, const Use& use) {
  common::ComPtr<ITypeInfo> info;
  common::UniqueBstr name;
  ASSERT_EQ(S_OK, object->GetTypeInfo(0, LOCALE_NEUTRAL, info.Put()));
  info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
  if (!seen.insert(name.Get()).second) {
    return;
  }
  use(object, *info.Get());
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    info->GetFuncDesc(i, &function);
    const bool isPlain = function->invkind == INVOKE_PROPERTYGET && function->cParams == 0;
    const MEMBERID member = function->memid;
    info->ReleaseFuncDesc(function);
    Variant value;
    DISPPARAMS none{};
    if (!isPlain || FAILED(object->Invoke(member, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET,
                                          &none, &value, nullptr, nullptr))) {
      continue;
    }
    common::ComPtr<IEnumVARIANT> enumerator;
    if (member == DISPID_NEWENUM &&
        SUCCEEDED(value.punkVal->QueryInterface(__uuidof(IEnumVARIANT),
                                                reinterpret_cast<void**>(enumerator.Put())))) {
      Variant first;
      if (enumerator->Next(1, &first, nullptr) == S_OK) {
        ForEachReachable(first.pdispVal, seen, use);
      }
    } else if (value.vt == VT_DISPATCH && value.pdispVal) {
      ForEachReachable(value.pdispVal, seen, use);
    }
  }
  info->ReleaseTypeAttr(attributes);
}

/// An object of another maker, which lives on the stack and has no type information.
template <class Interface>
class StackObject : public Interface {
 public:
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    const bool known =
        iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(Interface);
    *out = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, wchar_t**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHOD(Invoke)
  (DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
};

/// A collection of modules by another maker, which may lie about what it has.
class Collection final : public StackObject<IMergeModules> {
 public:
  std::vector<common::ComPtr<IMergeModule>> m_items;
  long m_surplus = 0;  ///< by which Count is too great
  HRESULT m_beyond = E_INVALIDARG;

  STDMETHOD(get_Item)(VARIANT index, IMergeModule** item) override {
    const size_t position = static_cast<size_t>(index.lVal) - 1;
    if (position >= m_items.size()) {
      return m_beyond;
    }
    *item = common::ComPtr<IMergeModule>(m_items[position]).Detach();
    return S_OK;
  }
  STDMETHOD(get_Count)(long* count) override {
    *count = static_cast<long>(m_items.size()) + m_surplus;
    return S_OK;
  }
  STDMETHOD(get__NewEnum)(IUnknown**) override { return E_NOTIMPL; }
  STDMETHOD(get_Enumerator)(IEnumVARIANT**) override { return E_NOTIMPL; }
};

/// An array with one element, a key, which runs code when it is read.
class ScriptArray final : public StackObject<IDispatch> {
 public:
  explicit ScriptArray(std::function<void()> whenRead) : m_whenRead(std::move(whenRead)) {}

  STDMETHOD(GetIDsOfNames)(REFIID, wchar_t** names, UINT, LCID, DISPID* id) override {
    *id = std::wstring_view(*names) == L"length" ? 1 : 2;
    return S_OK;
  }
  STDMETHOD(Invoke)
  (DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
    if (id == 1) {
      result->vt = VT_I4;
      result->lVal = 1;
      return S_OK;
    }
    m_whenRead();
    result->vt = VT_BSTR;
    result->bstrVal = ::SysAllocString(L"Last");
    return S_OK;
  }

 private:
  std::function<void()> m_whenRead;
};

/// A function with two numbers.
class ScriptFunction final : public StackObject<IDispatch> {
 public:
  using Body = std::function<HRESULT(long, long, VARIANT&, EXCEPINFO&)>;

  explicit ScriptFunction(Body body) : m_body(std::move(body)) {}

  STDMETHOD(Invoke)
  (DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
   EXCEPINFO* exception, UINT*) override {
    EXPECT_EQ(DISPID_VALUE, id);
    EXPECT_EQ(DISPATCH_METHOD, flags);
    EXPECT_EQ(2u, arguments->cArgs);
    return m_body(arguments->rgvarg[1].lVal, arguments->rgvarg[0].lVal, *result, *exception);
  }

 private:
  Body m_body;
};

class MergeSetTest : public CatalogFixture {
 protected:
  void SetUp() override {
    CatalogFixture::SetUp();
    SetSearchPath(L"*set");
    m_sets.Load((ProgramFolder() / L"QmMergeSet.dll").wstring());
    m_set = m_sets.Create<IMergeSet>(CLSID_MergeSet);
    ASSERT_TRUE(m_set);
  }
  void TearDown() override {
    m_catalog.Release();
    m_set.Release();
    EXPECT_EQ(S_OK, m_sets.DllCanUnloadNow());
    m_sets.Unload();
    CatalogFixture::TearDown();
  }

  /// Makes a module with a file in each of the given directories.
  void WriteModuleOfFiles(const std::wstring& path, const std::string& id,
                          const std::vector<std::pair<std::string, std::string>>& files,
                          const std::string& directories,
                          const std::vector<TableText>& more = {}) const {
    std::string components, rows;
    for (const auto& [name, directory] : files) {
      components.append("C").append(name).append("\t\t").append(directory).append("\n");
      rows.append("F").append(name).append("\tC").append(name).append("\t").append(name).append(
          "\t10\t1.0\t1033\t\t1\n");
    }
    std::vector<TableText> tables{
        {L"ModuleSignature", id + "\t1033\t1.0\n"},
        {L"_SummaryInformation", "7\tIntel;1033\n9\t{" + id + "}\n14\t200\n"},
        {L"Component", components},
        {L"File", rows},
        {L"Directory", directories,
         "Directory\tDirectory_Parent\tDefaultDir\ns72\tS72\tl255\nDirectory\tDirectory\n"}};
    tables.insert(tables.end(), more.begin(), more.end());
    BuildModule(PathOf(path), tables);
  }

  HRESULT LoadCatalog() {
    m_catalog = NewCatalog();
    return m_set->Load(ModulesOf(m_catalog.Get()).Get());
  }

  common::ComPtr<ISetModule> ModuleOf(const wchar_t* key) const {
    common::ComPtr<ISetModules> modules;
    common::ComPtr<ISetModule> module;
    EXPECT_EQ(S_OK, m_set->get_Modules(modules.Put()));
    EXPECT_EQ(S_OK, modules->get_Item(Variant(key), module.Put()));
    return module;
  }

  /// "module: folder\name", or "(redirected) ..." for each file that matches a pattern.
  std::vector<std::wstring> FindFiles(const wchar_t* pattern) const {
    const common::UniqueBstr text(common::TryAllocateBstr(pattern));
    common::ComPtr<ISetFiles> files;
    EXPECT_EQ(S_OK, m_set->FindFiles(text.Get(), files.Put()));
    std::vector<std::wstring> found;
    for (const auto& file : ItemsOf<ISetFile>(files)) {
      common::ComPtr<ISetModule> module;
      VARIANT_BOOL isRedirected = VARIANT_FALSE;
      EXPECT_EQ(S_OK, file->get_Module(module.Put()));
      EXPECT_EQ(S_OK, file->get_IsRedirected(&isRedirected));
      found.push_back(Text(module, &ISetModule::get_Key) + L": " +
                      Text(file, &ISetFile::get_TargetPath) + L" " +
                      Text(file, &ISetFile::get_Name) + (isRedirected ? L" (redirected)" : L""));
    }
    return found;
  }

  std::vector<std::wstring> Check(const VARIANT& keys) const {
    common::ComPtr<ISetFindings> findings;
    std::vector<std::wstring> codes;
    if (m_set->Check(keys, findings.Put()) == S_OK) {
      for (const auto& finding : ItemsOf<ISetFinding>(findings)) {
        codes.push_back(Text(finding, &ISetFinding::get_Code));
      }
    }
    return codes;
  }
  std::vector<std::wstring> CheckAll() const {
    return Check(Around(VT_ERROR, DISP_E_PARAMNOTFOUND));
  }

  /// Replaces the function with which the set component opens files.
  static HANDLE WINAPI CountOpening(const wchar_t* path, DWORD access, DWORD share,
                                    SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                    HANDLE fileTemplate) {
    ++s_opened;
    return ::CreateFileW(path, access, share, security, disposition, flags, fileTemplate);
  }

  static inline int s_opened;

  ComDll m_sets;
  common::ComPtr<IMergeSet> m_set;
  common::ComPtr<IMMCatalogCaskel> m_catalog;
};

TEST_F(MergeSetTest, FoldersAreThoseOfTheInstallerInTheSpellingOfTheProject) {
  WriteModuleOfFiles(L"set\\a.msm", "A",
                     {{"one", "SystemFolder.A"}, {"two", "Sub"}, {"three", "Own.A"}},
                     "TARGETDIR\t\tSourceDir\nSystemFolder.A\tTARGETDIR\t.:whatever\n"
                     "Sub\tSystemFolder.A\tdrivers\nOwn.A\tTARGETDIR\tOWN~1|Own Folder\n");
  ASSERT_EQ(S_OK, LoadCatalog());
  EXPECT_THAT(FindFiles(L"*"), ElementsAre(L"A:1033: [SystemFolder] one", HasSubstr(L"[TARGETDIR]"),
                                           L"A:1033: [SystemFolder]drivers two"));
  ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", L"1");
  EXPECT_THAT(FindFiles(L"t*"),
              ElementsAre(HasSubstr(L"<TARGETDIR>"), L"A:1033: <WINSYSDIR>drivers two"));
  ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", L"7");
  EXPECT_THAT(FindFiles(L"two"), ElementsAre(L"A:1033: [SystemFolder]drivers two"));
  ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", nullptr);
}

TEST_F(MergeSetTest, TablesAreThereByNameWithTypedCells) {
  WriteModuleOfFiles(L"set\\a.msm", "A", {{"one", "D"}}, "D\t\tSourceDir\n",
                     {{L"Own", "1\ttext\n-7\t\n", "Number\tText\ni2\tS0\nOwn\tNumber\n"}});
  ASSERT_EQ(S_OK, LoadCatalog());
  const common::ComPtr<ISetModule> module = ModuleOf(L"a:1033");
  EXPECT_EQ(L"Intel", Text(module, &ISetModule::get_Platform));
  common::ComPtr<ISetTables> tables;
  common::ComPtr<ISetTable> table;
  common::ComPtr<ISetRows> rows;
  ASSERT_EQ(S_OK, module->get_Tables(tables.Put()));
  ASSERT_EQ(S_OK, tables->get_Item(Variant(L"own"), table.Put()));
  ASSERT_EQ(S_OK, table->get_Rows(rows.Put()));
  std::vector<std::wstring> cells;
  for (const auto& row : ItemsOf<ISetRow>(rows)) {
    Variant number, text, none;
    EXPECT_EQ(S_OK, row->get_Item(Variant(L"NUMBER"), &number));
    EXPECT_EQ(S_OK, row->get_Item(Variant(2), &text));
    EXPECT_EQ(E_INVALIDARG, row->get_Item(Variant(3), &none));
    EXPECT_EQ(VT_I4, number.vt);
    cells.push_back(std::to_wstring(number.lVal) +
                    (text.vt == VT_NULL ? L" null" : L" " + std::wstring(text.bstrVal)));
  }
  EXPECT_THAT(cells, testing::UnorderedElementsAre(L"1 text", L"-7 null"));
}

TEST_F(MergeSetTest, AnEnumeratorSkipsStartsAgainAndIsCopiedWithItsPlace) {
  WriteModuleOfFiles(L"set\\a.msm", "A", {{"one", "D"}, {"three", "D"}, {"two", "D"}},
                     "D\t\tSourceDir\n");
  ASSERT_EQ(S_OK, LoadCatalog());
  common::ComPtr<ISetFiles> files;
  common::ComPtr<IUnknown> unknown;
  common::ComPtr<IEnumVARIANT> enumerator;
  common::ComPtr<IEnumVARIANT> clone;
  ASSERT_EQ(S_OK, ModuleOf(L"A:1033")->get_Files(files.Put()));
  ASSERT_EQ(S_OK, files->get__NewEnum(unknown.Put()));
  ASSERT_EQ(S_OK, unknown.QueryInterface(enumerator.Put()));
  const auto countLeft = [](IEnumVARIANT& of) {
    int left = 0;
    for (Variant value; of.Next(1, &value, nullptr) == S_OK; ::VariantClear(&value)) {
      ++left;
    }
    return left;
  };
  EXPECT_EQ(S_OK, enumerator->Skip(2));
  EXPECT_EQ(S_OK, enumerator->Clone(clone.Put()));
  EXPECT_EQ(S_OK, enumerator->Skip(1));
  EXPECT_EQ(S_FALSE, enumerator->Skip(1));
  EXPECT_EQ(1, countLeft(*clone.Get()));
  EXPECT_EQ(S_OK, enumerator->Reset());
  VARIANT values[4] = {};
  ULONG fetched = 0;
  EXPECT_EQ(S_FALSE, enumerator->Next(4, values, &fetched));
  EXPECT_EQ(3u, fetched);
  for (VARIANT& value : values) {
    ::VariantClear(&value);
  }
}

TEST_F(MergeSetTest, PlansChecksAndUsersAgree) {
  WriteModule(L"set\\base.msm", "Base");
  BuildModule(PathOf(L"set\\user.msm"),
              {{L"ModuleSignature", "User\t1033\t1.0\n"},
               {L"_SummaryInformation", "9\t{U}\n"},
               {L"ModuleDependency", "User\t1033\tBASE\t1033\t\nUser\t1033\tAbsent\t0\t2.0\n"}});
  ASSERT_EQ(S_OK, LoadCatalog());
  common::ComPtr<IMergePlan> plan;
  common::ComPtr<IPlannedModules> planned;
  common::ComPtr<IMissingModules> missing;
  ASSERT_EQ(S_OK, m_set->Plan(Variant(L"USER"), plan.Put()));
  ASSERT_EQ(S_OK, plan->get_Modules(planned.Put()));
  ASSERT_EQ(S_OK, plan->get_Missing(missing.Put()));
  std::vector<std::wstring> order;
  for (const auto& step : ItemsOf<IPlannedModule>(planned)) {
    common::ComPtr<ISetModule> module;
    EXPECT_EQ(S_OK, step->get_Module(module.Put()));
    order.push_back(Text(module, &ISetModule::get_Key));
  }
  EXPECT_THAT(order, ElementsAre(L"Base:1033", L"User:1033"));
  long count = 0;
  EXPECT_EQ(S_OK, missing->get_Count(&count));
  EXPECT_EQ(1, count);

  const common::UniqueBstr base(common::TryAllocateBstr(L"Base:1033"));
  common::ComPtr<IModuleUsers> users;
  ASSERT_EQ(S_OK, m_set->UsersOf(base.Get(), users.Put()));
  ASSERT_EQ(1u, ItemsOf<IModuleUser>(users).size());
  const auto keysOf = [](const common::ComPtr<ISetModules>& modules) {
    std::vector<std::wstring> keys;
    for (const auto& module : ItemsOf<ISetModule>(modules)) {
      keys.push_back(Text(module, &ISetModule::get_Key));
    }
    return keys;
  };
  common::ComPtr<ISetModules> modules;
  EXPECT_EQ(S_OK, ItemsOf<IModuleUser>(users).front()->get_Chain(modules.Put()));
  EXPECT_THAT(keysOf(modules), ElementsAre(L"User:1033", L"Base:1033"));
  EXPECT_EQ(S_OK, ItemsOf<IPlannedModule>(planned).back()->get_Needs(modules.Put()));
  EXPECT_THAT(keysOf(modules), ElementsAre(L"Base:1033"));

  common::ComPtr<IPlanConflicts> conflicts;
  common::ComPtr<IModuleChains> chains;
  common::ComPtr<IPlanFixes> fixes;
  ASSERT_EQ(S_OK, plan->get_Conflicts(conflicts.Put()));
  ASSERT_EQ(1u, ItemsOf<IPlanConflict>(conflicts).size());
  const common::ComPtr<IPlanConflict> conflict = ItemsOf<IPlanConflict>(conflicts).front();
  EXPECT_EQ(L"User:1033 needs Absent, at least 2.0: no module has this ID",
            Text(conflict, &IPlanConflict::get_Text));
  ASSERT_EQ(S_OK, conflict->get_Chains(chains.Put()));
  EXPECT_THAT(keysOf(ItemsOf<ISetModules>(chains).front()), ElementsAre(L"User:1033"));
  ASSERT_EQ(S_OK, conflict->get_Fixes(fixes.Put()));
  const common::ComPtr<IPlanFix> fix = ItemsOf<IPlanFix>(fixes).front();
  EXPECT_EQ(L"a module Absent with version 2.0 or higher is missing",
            Text(fix, &IPlanFix::get_Text));
  EXPECT_EQ(S_OK, fix->get_Modules(modules.Put()));
  EXPECT_THAT(keysOf(modules), testing::UnorderedElementsAre(L"Base:1033", L"User:1033"));
  EXPECT_THAT(CheckAll(), ElementsAre(L"missing-dependency"));
  EXPECT_THAT(Check(Variant(L"Base")), ElementsAre());
  common::ComPtr<ISetFindings> findings;
  ASSERT_EQ(S_OK, m_set->Check(Variant(L"User"), findings.Put()));
  EXPECT_EQ(S_OK, findings->get_CheckedModules(modules.Put()));
  EXPECT_THAT(keysOf(modules), ElementsAre(L"Base:1033", L"User:1033"));
  EXPECT_EQ(E_INVALIDARG, m_set->Check(Variant(L"Nobody"), findings.Put()));
  EXPECT_EQ(L"The set has no module \"Nobody\".", TakeDescription());
  EXPECT_EQ(E_INVALIDARG, m_set->Check(Variant(std::wstring(300, L'x').c_str()), findings.Put()));
  EXPECT_EQ(L"The set has no module \"" + std::wstring(200, L'x') + L"...\".", TakeDescription());

  VARIANT empty{};  // a variable of a script, and an array without elements
  Variant keys;
  keys.vt = VT_ARRAY | VT_VARIANT;
  keys.parray = ::SafeArrayCreateVector(VT_VARIANT, 0, 0);
  EXPECT_THAT(Check(Around(VT_VARIANT | VT_BYREF, &empty)), ElementsAre(L"missing-dependency"));
  EXPECT_EQ(E_INVALIDARG, m_set->Check(keys, findings.Put()));
  EXPECT_EQ(L"The array has no module keys.", TakeDescription());

  ASSERT_EQ(S_OK, m_set->get_Modules(modules.Put()));
  const struct {
    Variant index;
    const wchar_t* description;
  } wrong[] = {{Variant(L"Nobody"), L"The collection has no element \"Nobody\"."},
               {Variant(9L), L"The collection has no element number 9."},
               {Variant(0L), L"The collection has no such element."}};
  for (const auto& [index, description] : wrong) {
    common::ComPtr<ISetModule> module;
    EXPECT_EQ(E_INVALIDARG, modules->get_Item(index, module.Put()));
    EXPECT_EQ(description, TakeDescription());
  }
}

TEST_F(MergeSetTest, DataOfOneSizeIsComparedHoweverTheSetIsLoaded) {
  for (const char* const id : {"A", "B", "C"}) {
    const std::string data = *id == 'B' ? "else" : "same";
    const CompoundFileImage file = WriteCompoundFile(
        WriteDatabase({{{"ModuleSignature", ColumnsOf("ModuleSignature"), {{id, 1033, "1.0"}}},
                        {"Binary", ColumnsOf("Binary"), {{"Icon", 1}}}},
                       {{RowStream(u"Binary.Icon"), image::Bytes(data.begin(), data.end())}}}));
    WriteText(L"set\\" + std::wstring(1, *id) + L".msm", {file.bytes.begin(), file.bytes.end()});
  }
  m_catalog = NewCatalog();
  for (const char* const how : {"from a new catalog", "from a listed catalog"}) {
    ASSERT_EQ(S_OK, m_set->Load(m_catalog.Get()));
    EXPECT_THAT(CheckAll(), ElementsAre(L"row-conflict")) << how;
  }
}

TEST_F(MergeSetTest, DamagedAndChangedFilesAreFindingsAndTheOthersAreAnswered) {
  WriteModule(L"set\\sound.msm", "Sound");
  WriteModule(L"set\\changed.msm", "Changed");
  WriteText(L"set\\damaged.msm", "no database");
  m_catalog = NewCatalog();
  const common::ComPtr<IMergeModules> modules = ModulesOf(m_catalog.Get());
  WriteModule(L"set\\changed.msm", "Other");
  ASSERT_EQ(S_OK, m_set->Load(modules.Get()));
  EXPECT_THAT(CheckAll(), ElementsAre(L"changed-module", L"unreadable-module"));
  EXPECT_EQ(L"", Text(ModuleOf(L"Sound:1033"), &ISetModule::get_Failure));
  EXPECT_THAT(Text(ModuleOf(L"Changed:1033"), &ISetModule::get_Change), HasSubstr(L"\"Other\""));
}

TEST_F(MergeSetTest, LoadTakesAnyCollectionAndKeepsTheOldSetIfItFails) {
  WriteModule(L"set\\sound.msm", "Sound");
  Collection collection;
  collection.m_items.emplace_back(OpenModule(m_folder / L"set\\sound.msm").Get());
  collection.m_items.emplace_back(NewModule().Get());  // on which nothing is open
  ASSERT_EQ(S_OK, m_set->Load(&collection));
  EXPECT_EQ(L"1.0", Text(ModuleOf(L"Sound:1033"), &ISetModule::get_Version));
  EXPECT_THAT(CheckAll(), ElementsAre(L"unreadable-module"));

  const common::ComPtr<ISetModule> sound = ModuleOf(L"Sound:1033");
  collection.m_surplus = 1;
  for (const HRESULT beyond : {E_INVALIDARG, S_OK}) {  // refused, or without an item
    collection.m_beyond = beyond;
    EXPECT_EQ(E_UNEXPECTED, m_set->Load(&collection));
    EXPECT_EQ(L"The collection has no module number 3.", TakeDescription());
  }
  collection.m_beyond = E_ABORT;
  EXPECT_EQ(E_ABORT, m_set->Load(&collection));
  EXPECT_EQ(E_NOINTERFACE, m_set->Load(NewModule().Get()));
  EXPECT_EQ(E_POINTER, m_set->Load(nullptr));
  EXPECT_THAT(CheckAll(), ElementsAre(L"unreadable-module"));
  collection.m_items.clear();
  collection.m_surplus = -3;
  EXPECT_EQ(E_UNEXPECTED, m_set->Load(&collection));
  collection.m_surplus = 0;
  EXPECT_EQ(S_OK, m_set->Load(&collection));
  EXPECT_THAT(CheckAll(), ElementsAre());
  EXPECT_EQ(L"1.0", Text(sound, &ISetModule::get_Version)) << "objects keep what they were made of";
}

TEST_F(MergeSetTest, LoadOpensOnlyTheFilesThatTheCatalogDoesNotOpenToo) {
  WriteModule(L"set\\b.msm", "B");
  WriteModule(L"set\\a.msm", "A");
  m_catalog = NewCatalog();
  ReplaceImport(m_sets.Module(), "kernel32.dll", "CreateFileW",
                reinterpret_cast<void*>(&CountOpening));
  const auto countOpened = [&] {
    s_opened = 0;
    EXPECT_EQ(S_OK, m_set->Load(m_catalog.Get()));
    return s_opened;
  };
  EXPECT_EQ(0, countOpened());
  EXPECT_THAT(CheckAll(), ElementsAre());
  EXPECT_EQ(2, countOpened()) << "the catalog had nothing to read";
  WriteModule(L"set\\b.msm", "B", "2.0");
  WriteText(L"set\\damaged.msm", "no database");
  EXPECT_EQ(2, countOpened()) << "of what is new, the one that the catalog cannot read";
  EXPECT_EQ(L"? A:1033 B:1033", KeysOf(m_catalog.Get()));
  EXPECT_THAT(CheckAll(), ElementsAre(L"unreadable-module"));
  EXPECT_EQ(L"2.0", Text(ModuleOf(L"B:1033"), &ISetModule::get_Version));

  const auto empty = m_server.Create<IMMCatalogCaskel>(CLSID_MMCatalogPro);
  EXPECT_EQ(E_NOINTERFACE, m_set->Load(empty.Get()));
  EXPECT_EQ(L"The object is neither a collection nor a catalog of merge modules.",
            TakeDescription());
}

TEST_F(MergeSetTest, LoadReportsItsProgressToAFunctionThatMayEndIt) {
  for (const wchar_t* const name : {L"set\\a.msm", L"set\\b.msm", L"set\\c.msm"}) {
    WriteModule(name, "Other" + std::to_string(name[4]));
  }
  WriteText(L"set\\damaged.msm", "no database");  // the set reads this one
  std::vector<std::pair<long, long>> reports;
  ScriptFunction count([&](long number, long total, VARIANT&, EXCEPINFO&) {
    reports.emplace_back(number, total);
    return S_OK;
  });
  ScriptFunction cancel([&](long number, long, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_BOOL;
    result.boolVal = number < 2 ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  });
  ScriptFunction fail([&](long, long, VARIANT&, EXCEPINFO& exception) {
    exception.scode = E_ACCESSDENIED;
    exception.bstrDescription = ::SysAllocString(L"The window is gone.");
    return DISP_E_EXCEPTION;
  });
  ScriptFunction reload([&](long number, long, VARIANT&, EXCEPINFO&) {
    EXPECT_EQ(S_OK, m_set->ReportProgressTo(VARIANT{}));
    common::ComPtr<IMergeModules> modules;
    EXPECT_EQ(number == 4 ? S_OK : E_PENDING, m_catalog->get_MergeModules(modules.Put())) << number;
    return S_OK;
  });
  const common::ComPtr<IMMCatalogCaskel> listed = NewCatalog();
  const common::ComPtr<IMergeModules> modules = ModulesOf(listed.Get());
  for (const bool isFresh : {true, false}) {
    const auto load = [&](ScriptFunction* function) {
      if (isFresh) {
        ForgetAll();
        SetSearchPath(L"*set");
        m_catalog = NewCatalog();
      }
      EXPECT_EQ(S_OK, m_set->ReportProgressTo(Around(VT_DISPATCH, function)));
      return m_set->Load(isFresh ? static_cast<IDispatch*>(m_catalog.Get()) : modules.Get());
    };
    SCOPED_TRACE(isFresh);
    reports.clear();
    EXPECT_EQ(S_OK, load(&count));
    EXPECT_THAT(reports,
                ElementsAre(std::pair(1, 4), std::pair(2, 4), std::pair(3, 4), std::pair(4, 4)));
    EXPECT_EQ(E_ABORT, load(&cancel));
    EXPECT_EQ(L"The load was cancelled.", TakeDescription());
    EXPECT_EQ(E_ACCESSDENIED, load(&fail));
    EXPECT_EQ(L"The function that is told of progress failed: The window is gone.",
              TakeDescription());
    EXPECT_THAT(CheckAll(), ElementsAre(L"unreadable-module")) << "what was loaded stays";
    if (isFresh) {
      EXPECT_EQ(S_OK, load(&reload)) << "the function may call the objects";
    }
  }
  EXPECT_EQ(S_OK, m_set->ReportProgressTo(Around(VT_NULL, LONGLONG{0})));  // null of JScript
  EXPECT_EQ(E_INVALIDARG, m_set->ReportProgressTo(Variant(1L)));
  EXPECT_EQ(L"The argument is not a function.", TakeDescription());
}

TEST_F(MergeSetTest, AnArgumentMayLoadAnotherSet) {
  for (const wchar_t* const name : {L"set\\a.msm", L"set\\b.msm", L"set\\c.msm"}) {
    WriteModule(name, "Other" + std::to_string(name[4]));
  }
  WriteModule(L"set\\z.msm", "Last");
  Collection small;
  small.m_items.emplace_back(OpenModule(m_folder / L"set\\z.msm").Get());
  for (const bool growing : {true, false}) {
    ASSERT_EQ(S_OK, growing ? m_set->Load(&small) : LoadCatalog());
    ScriptArray keys([&] { EXPECT_EQ(S_OK, growing ? LoadCatalog() : m_set->Load(&small)); });
    common::ComPtr<IMergePlan> plan;
    common::ComPtr<IPlannedModules> planned;
    long count = 0;
    ASSERT_EQ(S_OK, m_set->Plan(Around(VT_DISPATCH, &keys), plan.Put()));
    EXPECT_EQ(S_OK, plan->get_Modules(planned.Put()));
    EXPECT_EQ(S_OK, planned->get_Count(&count));
    EXPECT_EQ(1, count);
    EXPECT_THAT(Check(Around(VT_DISPATCH, &keys)), ElementsAre());
  }
}

TEST_F(MergeSetTest, NothingIsAnsweredBeforeTheFirstLoad) {
  common::ComPtr<ISetModules> modules;
  common::ComPtr<ISetFiles> files;
  EXPECT_EQ(E_UNEXPECTED, m_set->get_Modules(modules.Put()));
  EXPECT_EQ(L"No modules are loaded.", TakeDescription());
  EXPECT_EQ(E_UNEXPECTED, m_set->FindFiles(nullptr, files.Put()));
  EXPECT_EQ(E_POINTER, m_set->Plan(Variant(L"A"), nullptr));
}

TEST_F(MergeSetTest, EveryObjectFollowsTheRulesOfComAndRefusesNullPointers) {
  BuildRichModule(PathOf(L"set\\rich.msm"));
  ASSERT_EQ(S_OK, LoadCatalog());
  common::ComPtr<IMergePlan> plan;
  common::ComPtr<ISetFindings> findings;
  common::ComPtr<IFileDeliverers> deliverers;
  const common::UniqueBstr pattern(common::TryAllocateBstr(L"*"));
  ASSERT_EQ(S_OK, m_set->Plan(Variant(L"Rich.0A1B"), plan.Put()));
  ASSERT_EQ(S_OK, m_set->Check(Variant(L"Rich.0A1B"), findings.Put()));
  ASSERT_EQ(S_OK, m_set->FindDeliverers(pattern.Get(), deliverers.Put()));
  std::set<std::wstring> seen{L"IMergeModule", L"IMergeModule2", L"IMergeModuleTavik"};
  const std::vector<IDispatch*> roots{m_set.Get(), plan.Get(), findings.Get(), deliverers.Get()};
  for (IDispatch* const root : roots) {
    ForEachReachable(root, seen, [](IDispatch* object, ITypeInfo& info) {
      TYPEATTR* attributes = nullptr;
      info.GetTypeAttr(&attributes);
      common::ComPtr<IUnknown> identity, own, viaOwn;
      common::ComPtr<ISupportErrorInfo> support;
      EXPECT_EQ(S_OK, object->QueryInterface(__uuidof(IUnknown),
                                             reinterpret_cast<void**>(identity.Put())));
      EXPECT_EQ(S_OK,
                object->QueryInterface(attributes->guid, reinterpret_cast<void**>(own.Put())));
      EXPECT_EQ(S_OK,
                own->QueryInterface(__uuidof(IUnknown), reinterpret_cast<void**>(viaOwn.Put())));
      EXPECT_EQ(identity.Get(), viaOwn.Get());
      EXPECT_EQ(S_OK, object->QueryInterface(__uuidof(ISupportErrorInfo),
                                             reinterpret_cast<void**>(support.Put())));
      EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(attributes->guid));
      for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        info.GetFuncDesc(i, &function);
        if (function->invkind == INVOKE_PROPERTYGET && function->cParams == 0) {
          const size_t slot = static_cast<size_t>(function->oVft) / sizeof(void*) - 6;
          EXPECT_EQ(E_POINTER, CallSlotWithNull(object, slot, static_cast<void*>(nullptr)))
              << "slot " << slot;
        }
        info.ReleaseFuncDesc(function);
      }
      info.ReleaseTypeAttr(attributes);
    });
  }
  // All interfaces but those of things that this set does not have.
  EXPECT_GE(seen.size(), 28u);
}

TEST_F(MergeSetTest, AShortageWhileACatalogIsReadFailsTheLoadAlone) {
  BuildRichModule(PathOf(L"set\\rich.msm"));
  m_catalog = NewCatalog();
  ASSERT_EQ(S_OK, m_set->Load(m_catalog.Get()));
  m_set.Release();
  std::optional<ReplacedImports> imports(m_sets.Module());
  m_set = m_sets.Create<IMergeSet>(CLSID_MergeSet);
  int begun = 0;
  const auto load = [&] {
    m_catalog.Release();
    WriteModule(L"set\\new.msm", "New", std::to_string(++begun));  // the one that is read
    m_catalog = NewCatalog();
    FailCall(FaultKind::Heap, begun);
    const HRESULT hr = m_set->Load(m_catalog.Get());
    const bool failed = FailedFunction() != nullptr;
    FailNoCall();
    EXPECT_TRUE(hr == S_OK || (failed && hr == E_OUTOFMEMORY)) << hr;
    return hr;
  };
  int failures = 0;
  while (begun < 60) {
    failures += load() == E_OUTOFMEMORY ? 1 : 0;
    EXPECT_EQ(0, OpenFiles());
    ASSERT_EQ(S_OK, m_set->Load(m_catalog.Get()));
    EXPECT_TRUE(ModuleOf(L"New:1033"));
  }
  EXPECT_GT(failures, 20);
  m_catalog.Release();
  m_set.Release();
  imports.reset();
  m_set = m_sets.Create<IMergeSet>(CLSID_MergeSet);
}

TEST_F(MergeSetTest, AShortageFailsOneCallAndLeavesNothing) {
  BuildRichModule(PathOf(L"set\\rich.msm"));
  m_catalog = NewCatalog();
  const common::ComPtr<IMergeModules> modules = ModulesOf(m_catalog.Get());
  const common::UniqueBstr pattern(common::TryAllocateBstr(L"*.dll"));
  ASSERT_EQ(S_OK, m_set->Load(modules.Get()));
  const auto ask = [&] {
    common::ComPtr<ISetFiles> files;
    common::ComPtr<ISetFile> file;
    common::ComPtr<ISetFindings> findings;
    common::ComPtr<ISetFinding> finding;
    common::UniqueBstr folder;
    Variant keys;
    HRESULT hr = m_set->Load(modules.Get());
    hr = FAILED(hr) ? hr : m_set->FindFiles(pattern.Get(), files.Put());
    hr = FAILED(hr) ? hr : files->get_Item(Variant(1), file.Put());
    hr = FAILED(hr) ? hr : file->get_TargetPath(folder.Put());
    hr = FAILED(hr) ? hr : m_set->Check(Variant(L"Rich.0A1B"), findings.Put());
    hr = FAILED(hr) ? hr : findings->get_Item(Variant(1), finding.Put());
    return FAILED(hr) ? hr : finding->get_ModuleKeys(&keys);
  };
  ASSERT_EQ(S_OK, ask());
  // What the DLL keeps while it is loaded is there now. Everything else is made and released while
  // its imports are replaced.
  m_set.Release();
  std::optional<ReplacedImports> imports(m_sets.Module());
  m_set = m_sets.Create<IMergeSet>(CLSID_MergeSet);
  for (const FaultKind kind : {FaultKind::Heap, FaultKind::Text, FaultKind::File}) {
    ASSERT_EQ(S_OK, ask());
    const int blocks = HeapBlocks();
    int unnoticed = 0;
    const int runs = SweepFaults(kind, [&](int call) {
      SCOPED_TRACE("call " + std::to_string(call));
      const HRESULT hr = ask();
      const bool failed = FailedFunction() != nullptr;
      FailNoCall();
      if (kind == FaultKind::File) {  // a module that cannot be read has no files to be found
        EXPECT_EQ(failed ? E_INVALIDARG : S_OK, hr);
      } else if (failed && hr == S_OK) {
        ++unnoticed;
      } else {
        EXPECT_EQ(failed ? E_OUTOFMEMORY : S_OK, hr);
      }
      EXPECT_EQ(S_OK, ask());
      EXPECT_EQ(blocks, HeapBlocks());
      EXPECT_EQ(0, OpenFiles());
    });
    EXPECT_GT(runs, kind == FaultKind::Heap ? 100 : 1);
    // The server itself drops a gallery description that it cannot open for lack of memory.
    EXPECT_LE(unnoticed, 2);
  }
  m_set.Release();
  imports.reset();
  m_set = m_sets.Create<IMergeSet>(CLSID_MergeSet);
}

}  // namespace

}  // namespace qm::tests
