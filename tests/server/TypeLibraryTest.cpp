#include <algorithm>
#include <set>

#include "common/Bstr.h"
#include "tests/support/Interfaces.h"
#include "tests/support/ServerTest.h"

namespace {

class TypeLibraryTest : public CServerTest {};

CComPtr<ITypeLib> LoadTypes(const std::wstring& path) {
  CComPtr<ITypeLib> library;
  EXPECT_EQ(S_OK, ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
  return library;
}

std::wstring NameOf(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
  CUniqueBstr name, help;
  EXPECT_EQ(S_OK, info->GetDocumentation(member, name.Put(), help.Put(), nullptr, nullptr));
  EXPECT_FALSE(ViewOf(help.Get()).empty()) << "no helpstring: " << member;
  return std::wstring(ViewOf(name.Get()));
}

TYPEATTR AttributesOf(ITypeInfo* info) {
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  const TYPEATTR copy = *attributes;
  info->ReleaseTypeAttr(attributes);
  return copy;
}

/// The type that `info` refers to by a number: -1 the virtual table of a dual interface, 0 the base
/// or the first interface.
CComPtr<ITypeInfo> Referenced(ITypeInfo* info, int number) {
  HREFTYPE reference = 0;
  CComPtr<ITypeInfo> referenced;
  EXPECT_EQ(S_OK, info->GetRefTypeOfImplType(static_cast<UINT>(number), &reference));
  EXPECT_EQ(S_OK, info->GetRefTypeInfo(reference, referenced.Put()));
  return referenced;
}

/// Expects the members of an interface behind those of its base.
void ExpectMembers(ITypeInfo* table, const InterfaceFacts& facts) {
  const std::vector<Member> members = MembersOf(facts.name);
  size_t slot = facts.base ? MembersOf(facts.base).size() : 0;
  ASSERT_EQ(members.size(), slot + AttributesOf(table).cFuncs);
  EXPECT_EQ(4 * (7 + members.size()), AttributesOf(table).cbSizeVft);
  for (UINT i = 0; slot < members.size(); ++i) {
    FUNCDESC* function = nullptr;
    ASSERT_EQ(S_OK, table->GetFuncDesc(i, &function));
    const MEMBERID id = function->memid;
    EXPECT_EQ(static_cast<SHORT>(4 * (7 + slot)), function->oVft);
    table->ReleaseFuncDesc(function);
    const std::wstring& name = members[slot++].name;
    EXPECT_EQ(name, NameOf(table, id));
    const auto number = static_cast<MEMBERID>(slot);
    EXPECT_EQ(name == L"Item" ? 0 : name == L"_NewEnum" ? DISPID_NEWENUM : number, id);
  }
}

TEST_F(TypeLibraryTest, InterfacesHaveTheirMembersInTheirSlots) {
  const CComPtr<ITypeLib> library = LoadTypes((ProgramFolder() / L"qmmmupdater.tlb").wstring());
  ASSERT_EQ(std::size(kInterfaces), library->GetTypeInfoCount());
  const auto order = [](const GUID& a, const GUID& b) { return memcmp(&a, &b, sizeof a) < 0; };
  std::set<GUID, decltype(order)> guids({GUID_NULL}, order);
  for (UINT i = 0; i < std::size(kInterfaces); ++i) {
    CComPtr<ITypeInfo> info;
    ASSERT_EQ(S_OK, library->GetTypeInfo(i, info.Put()));
    const std::wstring name = NameOf(info.Get());
    SCOPED_TRACE(testing::PrintToString(name));
    const auto facts = std::find_if(std::begin(kInterfaces), std::end(kInterfaces),
                                    [&](const auto& known) { return known.name == name; });
    ASSERT_NE(std::end(kInterfaces), facts);
    EXPECT_TRUE(guids.insert(AttributesOf(info.Get()).guid).second) << "no GUID of its own";
    EXPECT_TRUE(AttributesOf(info.Get()).wTypeFlags & TYPEFLAG_FDUAL);
    const CComPtr<ITypeInfo> table = Referenced(info.Get(), -1);
    ExpectMembers(table.Get(), *facts);
    if (facts->base) {
      EXPECT_EQ(facts->base, NameOf(Referenced(table.Get(), 0).Get()));
    }
  }
}

TEST_F(TypeLibraryTest, TheServerCarriesItsClasses) {
  const CComPtr<ITypeLib> library = LoadTypes(CServerLibrary::Path());
  const std::pair<CLSID, IID> classes[] = {
      {CLSID_MMCatalog, __uuidof(IMMCatalogCaskel)},
      {CLSID_MMCatalogPro, __uuidof(IMMCatalogCaskel)},
      {CLSID_MergeModule2, __uuidof(IMergeModuleTavik)},
      {CLSID_MMCatalogManager, __uuidof(IMMCatalogManagerVelmora)}};
  for (const auto& [clsid, iid] : classes) {
    CComPtr<ITypeInfo> info;
    ASSERT_EQ(S_OK, library->GetTypeInfoOfGuid(clsid, info.Put()));
    SCOPED_TRACE(testing::PrintToString(NameOf(info.Get())));
    EXPECT_EQ(TKIND_COCLASS, AttributesOf(info.Get()).typekind);
    INT flags = 0;
    EXPECT_EQ(S_OK, info->GetImplTypeFlags(0, &flags));
    EXPECT_EQ(IMPLTYPEFLAG_FDEFAULT, flags);
    EXPECT_EQ(iid, AttributesOf(Referenced(info.Get(), 0).Get()).guid);
  }
}

TEST_F(TypeLibraryTest, StringResources) {
  for (const auto& [id, expected] :
       {std::pair<UINT, std::wstring>{100, L"QmMMUpdater2"}, {1009, L"Quillmark QmMMUpdater2"}}) {
    wchar_t text[64] = L"";
    ::LoadStringW(m_server.Module(), id, text, static_cast<int>(std::size(text)));
    EXPECT_EQ(expected, text);
  }
}

}  // namespace
