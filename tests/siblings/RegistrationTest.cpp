#include <gtest/gtest.h>

#include "common/Bstr.h"
#include "tests/siblings/Component.h"
#include "tests/support/TestFolder.h"

namespace {

/// Where the machine looks for the library of the components; empty when it knows none.
std::wstring RegisteredLibrary() {
  CUniqueBstr path;
  ::QueryPathOfRegTypeLib(LIBID_QmSiblingsLib, 1, 0, LOCALE_NEUTRAL, path.Put());
  // Up to its terminator, which some systems count as part of the text.
  return path ? path.Get() : L"";
}

HRESULT CreateRegistered(const wchar_t* progId, REFIID iid) {
  CLSID clsid;
  CComPtr<IUnknown> object;
  const HRESULT hr = ::CLSIDFromProgID(progId, &clsid);
  return FAILED(hr) ? hr
                    : ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid,
                                         reinterpret_cast<void**>(object.Put()));
}

TEST(SiblingRegistrationTest, ComponentsRegisterTheirClassesAndShareOneLibrary) {
  const CComThread com;
  const std::wstring readerPath = (ProgramFolder() / L"Gleaner.dll").wstring();
  const std::wstring servicesPath = (ProgramFolder() / L"QmAppServices.dll").wstring();
  const CComponent reader(readerPath);
  const CComponent services(servicesPath);
  const auto create = [](const wchar_t* version) {
    const std::wstring readerId = L"Gleaner.IniReader" + std::wstring(version);
    const std::wstring servicesId = L"QmAppServices.ApplicationServices" + std::wstring(version);
    return std::pair(CreateRegistered(readerId.c_str(), __uuidof(IIniReader)),
                     CreateRegistered(servicesId.c_str(), __uuidof(IApplicationServices)));
  };
  const auto both = std::pair(S_OK, S_OK);

  EXPECT_EQ(S_OK, reader.DllRegisterServer());
  EXPECT_EQ(readerPath, RegisteredLibrary());
  EXPECT_EQ(S_OK, services.DllRegisterServer());
  EXPECT_EQ(servicesPath, RegisteredLibrary());
  EXPECT_EQ(both, create(L""));
  EXPECT_EQ(both, create(L".1"));

  // The library that the other component registered stays with that one.
  EXPECT_EQ(S_OK, reader.DllUnregisterServer());
  EXPECT_EQ(servicesPath, RegisteredLibrary());
  EXPECT_EQ(std::pair(CO_E_CLASSSTRING, S_OK), create(L""));

  EXPECT_EQ(S_OK, services.DllUnregisterServer());
  EXPECT_EQ(L"", RegisteredLibrary());
  EXPECT_EQ(std::pair(CO_E_CLASSSTRING, CO_E_CLASSSTRING), create(L".1"));
  EXPECT_EQ(S_OK, services.DllUnregisterServer()) << "nothing is left to remove";
}

}  // namespace
