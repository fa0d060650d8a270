#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "common/Bstr.h"
#include "idl/mergeset.h"
#include "idl/siblings.h"
#include "tests/support/ComDll.h"
#include "tests/support/TestFolder.h"

namespace qm::tests {

namespace {

/// The registered path of a type library; empty if none is registered.
std::wstring RegisteredLibrary(REFGUID library = LIBID_QmSiblingsLib) {
  common::UniqueBstr path;
  ::QueryPathOfRegTypeLib(library, 1, 0, LOCALE_NEUTRAL, path.Put());
  // Up to its terminator, which some systems count as part of the text.
  return path ? path.Get() : L"";
}

HRESULT CreateRegistered(const wchar_t* progId, REFIID iid) {
  CLSID clsid;
  common::ComPtr<IUnknown> object;
  const HRESULT hr = ::CLSIDFromProgID(progId, &clsid);
  return FAILED(hr) ? hr
                    : ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid,
                                         reinterpret_cast<void**>(object.Put()));
}

TEST(SiblingRegistrationTest, ComponentsRegisterTheirClassesAndShareOneLibrary) {
  const ComThread com;
  const struct {
    const wchar_t* dll;
    const wchar_t* progId;
    IID iid;
  } classes[] = {
      {L"Gleaner.dll", L"Gleaner.IniReader", __uuidof(IIniReader)},
      {L"QmAppServices.dll", L"QmAppServices.ApplicationServices", __uuidof(IApplicationServices)},
      {L"Corvane8.dll", L"Corvane8.RepositoryMgr", __uuidof(IRepositoryMgr)},
  };
  std::vector<std::wstring> paths;
  std::vector<std::unique_ptr<ComDll>> components;
  for (const auto& c : classes) {
    paths.push_back((ProgramFolder() / c.dll).wstring());
    components.push_back(std::make_unique<ComDll>(paths.back()));
    EXPECT_EQ(S_OK, components.back()->DllRegisterServer());
    EXPECT_EQ(paths.back(), RegisteredLibrary());
  }

  // All are unregistered in turn; the library stays with the component that registered it last.
  for (size_t removed = 0; removed <= std::size(classes); ++removed) {
    SCOPED_TRACE(removed);
    for (size_t i = 0; i < std::size(classes); ++i) {
      const HRESULT expected = i < removed ? CO_E_CLASSSTRING : S_OK;
      const std::wstring progId = classes[i].progId;
      EXPECT_EQ(expected, CreateRegistered(progId.c_str(), classes[i].iid));
      EXPECT_EQ(expected, CreateRegistered((progId + L".1").c_str(), classes[i].iid));
    }
    EXPECT_EQ(removed < std::size(classes) ? paths.back() : L"", RegisteredLibrary());
    if (removed < std::size(classes)) {
      EXPECT_EQ(S_OK, components[removed]->DllUnregisterServer());
    }
  }
  EXPECT_EQ(S_OK, components.back()->DllUnregisterServer()) << "nothing is left to remove";
}

TEST(SiblingRegistrationTest, SetsOfModulesHaveALibraryOfTheirOwn) {
  const ComThread com;
  const std::wstring path = (ProgramFolder() / L"QmMergeSet.dll").wstring();
  const ComDll component(path);
  EXPECT_EQ(S_OK, component.DllRegisterServer());
  EXPECT_EQ(path, RegisteredLibrary(LIBID_QmMergeSetLib));
  EXPECT_EQ(S_OK, CreateRegistered(L"QmMMUpdater.MergeSet", __uuidof(IMergeSet)));
  EXPECT_EQ(S_OK, component.DllUnregisterServer());
  EXPECT_EQ(L"", RegisteredLibrary(LIBID_QmMergeSetLib));
  EXPECT_EQ(CO_E_CLASSSTRING, CreateRegistered(L"QmMMUpdater.MergeSet", __uuidof(IMergeSet)));
}

}  // namespace

}  // namespace qm::tests
