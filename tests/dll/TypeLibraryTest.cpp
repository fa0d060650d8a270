#include "tests/support/ServerFixture.h"

namespace {

class TypeLibraryTest : public CServerTest {};

TYPEATTR AttributesOf(ITypeInfo* info) {
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  const TYPEATTR copy = *attributes;
  info->ReleaseTypeAttr(attributes);
  return copy;
}

// Members, slots and identifiers are compared with the reference in docs/.
TEST_F(TypeLibraryTest, TheServerCarriesItsClasses) {
  CComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, ::LoadTypeLibEx(m_serverPath.c_str(), REGKIND_NONE, library.Put()));
  const std::pair<CLSID, IID> classes[] = {
      {CLSID_MMCatalog, __uuidof(IMMCatalogCaskel)},
      {CLSID_MMCatalogPro, __uuidof(IMMCatalogCaskel)},
      {CLSID_MergeModule2, __uuidof(IMergeModuleTavik)},
      {CLSID_MMCatalogManager, __uuidof(IMMCatalogManagerVelmora)}};
  for (const auto& [clsid, iid] : classes) {
    CComPtr<ITypeInfo> info, first;
    ASSERT_EQ(S_OK, library->GetTypeInfoOfGuid(clsid, info.Put()));
    EXPECT_EQ(TKIND_COCLASS, AttributesOf(info.Get()).typekind);
    INT flags = 0;
    EXPECT_EQ(S_OK, info->GetImplTypeFlags(0, &flags));
    EXPECT_EQ(IMPLTYPEFLAG_FDEFAULT, flags);
    HREFTYPE reference = 0;
    EXPECT_EQ(S_OK, info->GetRefTypeOfImplType(0, &reference));
    EXPECT_EQ(S_OK, info->GetRefTypeInfo(reference, first.Put()));
    EXPECT_EQ(iid, AttributesOf(first.Get()).guid);
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
