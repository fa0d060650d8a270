#include "common/Bstr.h"
#include "tests/support/Answers.h"
#include "tests/support/ServerFixture.h"

namespace qm::tests {

namespace {

const std::wstring kProgId = L"QmMMUpdater.MergeModule2";
const std::wstring kVersionedProgId = kProgId + L".1";

const std::pair<CLSID, std::wstring> kClasses[] = {
    {CLSID_MMCatalog, L"QmMMUpdater.MMCatalog"},
    {CLSID_MMCatalogPro, L"QmMMUpdater.MMCatalogPro"},
    {CLSID_MergeModule2, kProgId},
    {CLSID_MMCatalogManager, L"QmMMUpdater.MMCatalogManager"},
};

/// The keys below which a type library lists the files of this architecture and of the other one.
const std::wstring kOwnFile = sizeof(void*) == 8 ? L"\\1.0\\0\\win64" : L"\\1.0\\0\\win32";
const std::wstring kOtherFile = sizeof(void*) == 8 ? L"\\1.0\\0\\win32" : L"\\1.0\\0\\win64";

std::wstring TextOf(REFGUID guid) {
  wchar_t text[39];
  ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

/// A value below HKEY_CLASSES_ROOT; "(missing)" if it does not exist.
std::wstring RegistryValue(const std::wstring& key, const wchar_t* name) {
  wchar_t text[512];
  DWORD size = sizeof text;
  const LSTATUS status =
      ::RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : L"(missing)";
}

/// Activates the server's manifest while in scope.
class ServerContext {
 public:
  ServerContext() {
    const std::wstring manifest = (ProgramFolder() / L"Quillmark.MergeModules.manifest").wstring();
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.lpSource = manifest.c_str();
    m_context = ::CreateActCtxW(&description);
    EXPECT_NE(INVALID_HANDLE_VALUE, m_context);
    EXPECT_TRUE(::ActivateActCtx(m_context, &m_cookie));
  }
  ~ServerContext() {
    ::DeactivateActCtx(0, m_cookie);
    ::ReleaseActCtx(m_context);
  }
  ServerContext(const ServerContext&) = delete;
  ServerContext& operator=(const ServerContext&) = delete;

 private:
  HANDLE m_context;
  ULONG_PTR m_cookie = 0;
};

class RegistrationTest : public ServerFixture {
 protected:
  void SetUp() override {
    ServerFixture::SetUp();
    EXPECT_EQ(S_OK, m_server.DllUnregisterServer());
  }
  void TearDown() override {
    m_server.DllUnregisterServer();
    ServerFixture::TearDown();
  }
};

TEST_F(RegistrationTest, WritesAndRemovesItsEntries) {
  const std::wstring description = L"Quillmark QmMMUpdater2",
                     interfaces = TextOf(LIBID_QMMMUpdaterLib);
  struct Entry {
    std::wstring key;
    const wchar_t* name;
    std::wstring value;
  };
  std::vector<Entry> entries{
      {L"TypeLib\\" + interfaces + kOwnFile, nullptr,
       (ProgramFolder() / L"qmmmupdater.tlb").wstring()},
      {L"TypeLib\\" + TextOf(LIBID_QMMMUPDATER2Lib) + kOwnFile, nullptr, ServerLibrary::Path()},
      {L"Interface\\" + TextOf(__uuidof(IMergeModuleTavik)) + L"\\TypeLib", nullptr, interfaces},
      {L"Interface\\" + TextOf(__uuidof(IMMGalleryDownloadFileCaskel)) + L"\\TypeLib", nullptr,
       interfaces},
  };
  for (const auto& [guid, progId] : kClasses) {
    const std::wstring clsid = TextOf(guid), key = L"CLSID\\" + clsid, versioned = progId + L".1";
    const Entry ofClass[] = {
        {key, nullptr, description},
        {key + L"\\InprocServer32", nullptr, ServerLibrary::Path()},
        {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {key + L"\\ProgID", nullptr, versioned},
        {key + L"\\VersionIndependentProgID", nullptr, progId},
        {key + L"\\TypeLib", nullptr, TextOf(LIBID_QMMMUPDATER2Lib)},
        {progId, nullptr, description},
        {progId + L"\\CLSID", nullptr, clsid},
        {progId + L"\\CurVer", nullptr, versioned},
        {versioned, nullptr, description},
        {versioned + L"\\CLSID", nullptr, clsid},
    };
    entries.insert(entries.end(), std::begin(ofClass), std::end(ofClass));
  }
  for (const bool registers : {true, true, false, false}) {
    SCOPED_TRACE(registers ? "registered" : "unregistered");
    EXPECT_EQ(S_OK, registers ? m_server.DllRegisterServer() : m_server.DllUnregisterServer());
    for (const auto& [entry, name, value] : entries) {
      EXPECT_EQ(registers ? value : L"(missing)", RegistryValue(entry, name));
    }
  }
}

TEST_F(RegistrationTest, WhatTheOtherArchitectureRegisteredStays) {
  const std::wstring interfaces = TextOf(LIBID_QMMMUpdaterLib);
  const std::wstring libraries[] = {L"TypeLib\\" + interfaces,
                                    L"TypeLib\\" + TextOf(LIBID_QMMMUPDATER2Lib)};
  const std::wstring usesLibrary =
      L"Interface\\" + TextOf(__uuidof(IMergeModuleTavik)) + L"\\TypeLib";
  EXPECT_EQ(S_OK, m_server.DllRegisterServer());
  const std::wstring otherPath = L"C:\\other\\library.tlb";
  for (const std::wstring& library : libraries) {
    ASSERT_EQ(ERROR_SUCCESS, ::RegSetValueW(HKEY_CLASSES_ROOT, (library + kOtherFile).c_str(),
                                            REG_SZ, otherPath.c_str(), 0));
  }

  EXPECT_EQ(S_OK, m_server.DllUnregisterServer());
  for (const std::wstring& library : libraries) {
    EXPECT_EQ(L"(missing)", RegistryValue(library + kOwnFile, nullptr));
    EXPECT_EQ(otherPath, RegistryValue(library + kOtherFile, nullptr));
  }
  EXPECT_EQ(interfaces, RegistryValue(usesLibrary, nullptr));

  // The last one removes the rest.
  EXPECT_EQ(S_OK, m_server.DllRegisterServer());
  for (const std::wstring& library : libraries) {
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (library + kOtherFile).c_str());
  }
  EXPECT_EQ(S_OK, m_server.DllUnregisterServer());
  EXPECT_EQ(L"(missing)", RegistryValue(usesLibrary, nullptr));
}

TEST_F(RegistrationTest, EveryClassIsCreatedAndReportsInItsName) {
  EXPECT_EQ(S_OK, m_server.DllRegisterServer());
  for (const auto& [clsid, progId] : kClasses) {
    SCOPED_TRACE(testing::PrintToString(progId));
    common::ComPtr<IUnknown> object;
    ASSERT_EQ(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IUnknown),
                                       reinterpret_cast<void**>(object.Put())));
    common::ComPtr<IMMCatalogCaskel> catalog;
    if (SUCCEEDED(object.QueryInterface(catalog.Put()))) {
      VARIANT_BOOL supported = VARIANT_FALSE;
      EXPECT_EQ(E_NOINTERFACE, catalog->SupportsProject(object.Get(), &supported));
      EXPECT_EQ(progId + L".1", TakeSource());
    }
  }
  // Class factories and index tables stay.
  Settle();
}

TEST_F(RegistrationTest, AManifestReplacesRegistration) {
  CLSID clsid{};
  EXPECT_TRUE(FAILED(::CLSIDFromProgID(kProgId.c_str(), &clsid)));
  const ServerContext context;
  for (const std::wstring& progId : {kProgId, kVersionedProgId}) {
    SCOPED_TRACE(testing::PrintToString(progId));
    common::ComPtr<IMergeModuleTavik> module;
    ASSERT_EQ(S_OK, ::CLSIDFromProgID(progId.c_str(), &clsid));
    ASSERT_EQ(S_OK,
              ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IMergeModuleTavik),
                                 reinterpret_cast<void**>(module.Put())));
    EXPECT_EQ(S_OK, Open(module.Get(), m_rich));
    EXPECT_EQ(L"3.1.4", ReadModule(module.Get(), Route::Dispatch)[L"Version"]);
    EXPECT_TRUE(FAILED(Open(module.Get(), m_rich + L"x")));
    EXPECT_EQ(kVersionedProgId, TakeSource());
  }
  Settle();  // class factories stay
}

}  // namespace

}  // namespace qm::tests
