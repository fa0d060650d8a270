#include "tests/support/CatalogFixture.h"

#include <filesystem>

#include "common/Bstr.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"

namespace qm::tests {

namespace {

constexpr const wchar_t* kVariables[] = {L"QM_MODULE_PATH",      L"QM_USER_MODULE_PATH",
                                         L"QM_GALLERY_ROOT",     L"QM_DATA_DIR",
                                         L"QM_MODULE_INDEX_DIR", L"QM_FILE_INDEX_DIR"};

void ForgetSettings(const wchar_t* value) {
  for (const wchar_t* variable : kVariables) {
    ::SetEnvironmentVariableW(variable, value);
  }
}

}  // namespace

void CatalogFixture::SetUp() {
  ForgetSettings(L"");
  ServerFixture::SetUp();
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_folder / L"gallery").c_str());
}

void CatalogFixture::TearDown() {
  ForgetAll();
  ServerFixture::TearDown();
  ForgetSettings(nullptr);
}

void CatalogFixture::Settle() {
  // What the process keeps for all catalogs is made at the first list that has modules.
  WriteModule(L"settling\\module.msm", "Settling");
  WriteText(L"settling\\ObjectGallery\\x.ini", "[MergeModule]\r\nModuleID=Described\r\n");
  SetSearchPath(L"*settling");
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (m_folder / L"settling").c_str());
  {
    const auto catalog = NewCatalog();
    const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
    EXPECT_EQ(L"Settling:1033 Described:0", KeysOf(list.Get()));
    // Names and slots of an interface are kept from the first call by name on.
    common::ComPtr<IMMSources> sources;
    common::ComPtr<IMMSource> source;
    EXPECT_EQ(S_OK, catalog->get_Sources(sources.Put()));
    EXPECT_EQ(S_OK, sources->get_Item(Variant(1), source.Put()));
    const auto manager = m_server.Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager);
    const auto module = ModuleAt(list.Get(), 1);
    for (IDispatch* const object : std::initializer_list<IDispatch*>{
             catalog.Get(), list.Get(), module.Get(), sources.Get(), source.Get(), manager.Get()}) {
      DISPID member = 0;
      wchar_t name[] = L"none";
      wchar_t* names[] = {name};
      EXPECT_EQ(DISP_E_UNKNOWNNAME,
                object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &member));
    }
  }
  ForgetAll();
  m_server.Factory(CLSID_MMCatalogPro);
  m_server.Factory(CLSID_MMCatalogManager);
  ServerFixture::Settle();
}

void CatalogFixture::ForgetAll() const {
  ForgetSettings(L"");
  EXPECT_EQ(L"", KeysOf(NewCatalog().Get()));
}

HANDLE WINAPI CatalogFixture::OpenFile(const wchar_t* path, DWORD access, DWORD share,
                                       SECURITY_ATTRIBUTES* security, DWORD disposition,
                                       DWORD flags, HANDLE fileTemplate) {
  if (const auto what = std::exchange(m_whenOpened, nullptr)) {
    what();
  }
  return ::CreateFileW(path, access, share, security, disposition, flags, fileTemplate);
}

void CatalogFixture::WatchOpenedFiles() const {
  ASSERT_TRUE(ReplaceImport(m_server.Module(), "kernel32.dll", "CreateFileW",
                            reinterpret_cast<void*>(&OpenFile)));
}

void CatalogFixture::SetSearchPath(std::wstring path) const {
  const std::wstring folder = m_folder / L"";
  for (size_t at = 0; (at = path.find(L'*', at)) != std::wstring::npos; at += folder.size()) {
    path.replace(at, 1, folder);
  }
  ::SetEnvironmentVariableW(L"QM_MODULE_PATH", path.c_str());
}

std::wstring CatalogFixture::PathOf(const std::wstring& path) const {
  const std::filesystem::path full(m_folder / path);
  std::filesystem::create_directories(full.parent_path());
  return full.wstring();
}

std::wstring CatalogFixture::WriteModule(const std::wstring& path, const std::string& id,
                                         const std::string& version, int language) const {
  std::wstring full = PathOf(path);
  BuildModule(full,
              {{L"ModuleSignature", id + "\t" + std::to_string(language) + "\t" + version + "\n"},
               {L"_SummaryInformation", "1\t1252\n3\tTitle of " + id + "\n"}});
  return full;
}

void CatalogFixture::WriteText(const std::wstring& path, const std::string& content) const {
  PutFile(PathOf(path), content);
}

void CatalogFixture::WriteDescription(const std::wstring& name, const std::string& moduleId,
                                      const std::string& version, int language) const {
  WriteText(L"gallery\\ObjectGallery\\" + name + L".ini",
            "[MergeModule]\r\nModuleID=" + moduleId + "\r\nVersion=" + version +
                "\r\nLanguage=" + std::to_string(language) + "\r\n");
}

common::ComPtr<IMergeModules> ModulesOf(IMMCatalog* catalog) {
  common::ComPtr<IMergeModules> modules;
  EXPECT_EQ(S_OK, catalog->get_MergeModules(modules.Put()))
      << testing::PrintToString(TakeDescription());
  return modules;
}

std::wstring KeysOf(IMergeModules* modules) {
  std::wstring keys;
  long count = 0;
  modules->get_Count(&count);
  for (long position = 1; position <= count; ++position) {
    common::UniqueBstr key;
    ModuleAt(modules, position)->get_Key(key.Put());
    const std::wstring_view text = common::ViewOf(key.Get());
    keys.append(position == 1 ? L"" : L" ").append(text.empty() ? L"?" : text);
  }
  return keys;
}

common::ComPtr<IMergeModuleTavik> ModuleAt(IMergeModules* modules, long position) {
  common::ComPtr<IMergeModule> module;
  EXPECT_EQ(S_OK, modules->get_Item(Variant(position), module.Put()));
  common::ComPtr<IMergeModuleTavik> newest;
  module.QueryInterface(newest.Put());
  return newest;
}

std::wstring Find(IMMCatalogVelmora* catalog, const wchar_t* key, const wchar_t* version) {
  common::ComPtr<IMergeModules> modules;
  long count = -1;
  EXPECT_EQ(S_OK, catalog->FindModule(common::UniqueBstr(::SysAllocString(key)).Get(),
                                      common::UniqueBstr(::SysAllocString(version)).Get(), 0,
                                      modules.Put(), &count));
  long inCollection = -1;
  modules->get_Count(&inCollection);
  EXPECT_EQ(inCollection, count);
  return KeysOf(modules.Get());
}

int FilesOpened() { return CallCount("CreateFileW"); }

}  // namespace qm::tests
