#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Bstr.h"
#include "common/Path.h"
#include "common/SystemFolders.h"
#include "idl/siblings.h"
#include "tests/support/Answers.h"
#include "tests/support/ComDll.h"
#include "tests/support/TestFolder.h"

namespace qm::tests {

namespace {

using testing::StartsWith;

/// The flags of a script's call, which may mean a method or a property.
constexpr WORD kByName = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

/// A value, by its slot, and where it comes from.
struct Setting {
  size_t slot;
  const wchar_t* member;
  const wchar_t* variable;
  const char* key;
};

const Setting kSettings[] = {
    {1, L"GalleryRoot", L"QM_GALLERY_ROOT", "GalleryRoot"},
    {13, L"FileIndexFolder", L"QM_FILE_INDEX_DIR", "FileIndexDir"},
    {14, L"ModuleIndexFolder", L"QM_MODULE_INDEX_DIR", "ModuleIndexDir"},
    {15, L"ModuleSearchPath", L"QM_MODULE_PATH", "ModulePath"},
    {16, L"DataFolder", L"QM_DATA_DIR", "DataDir"},
    {17, L"UserModuleSearchPath", L"QM_USER_MODULE_PATH", "UserModulePath"},
};

/// The component in a folder of its own, so that no other test reads its settings file.
class ApplicationServicesTest : public ::testing::Test {
 protected:
  ApplicationServicesTest() {
    for (const Setting& setting : kSettings) {
      ::SetEnvironmentVariableW(setting.variable, nullptr);
    }
    std::filesystem::copy_file(ProgramFolder() / L"QmAppServices.dll", m_dll);
    m_component = std::make_unique<ComDll>(m_dll);
    m_services = m_component->Create<IApplicationServices>(CLSID_ApplicationServices);
  }

  void WriteSettings(std::string_view text) {
    PutFile(m_folder / L"QmAppServices.ini", "[Services]\r\n" + std::string(text));
  }

  std::wstring Get(const Setting& setting) {
    common::UniqueBstr value;
    EXPECT_EQ(S_OK, CallSlot(m_services.Get(), setting.slot, value.Put()));
    EXPECT_TRUE(value) << "a null text";
    return std::wstring(common::ViewOf(value.Get()));
  }

  std::wstring Default(const Setting& setting) {
    switch (setting.slot) {
      case 15:
        return common::JoinPath(common::GetProgramFolder(common::kCommonFiles), L"Merge Modules")
            .c_str();
      case 17:
        return L"";
      default:
        return common::ParentFolder(m_dll).c_str();
    }
  }

  ComThread m_com;
  TestFolder m_folder;
  std::wstring m_dll = m_folder / L"QmAppServices.dll";
  std::unique_ptr<ComDll> m_component;
  common::ComPtr<IApplicationServices> m_services;
};

TEST_F(ApplicationServicesTest, TheEnvironmentTakesPrecedenceOverTheSettingsFile) {
  const std::wstring longValue = std::wstring(3000, L'x') + L",C:\\\u00C4";
  for (const Setting& setting : kSettings) {
    SCOPED_TRACE(setting.key);
    const std::string key(setting.key);
    const auto set = [&](const wchar_t* value) {
      ::SetEnvironmentVariableW(setting.variable, value);
    };
    // One object throughout: every change counts at the next call.
    ::DeleteFileW((m_folder / L"QmAppServices.ini").c_str());
    EXPECT_EQ(Default(setting), Get(setting));
    WriteSettings("Other=1");
    EXPECT_EQ(Default(setting), Get(setting));
    WriteSettings(key + " = C:\\From File\r\n");
    EXPECT_EQ(L"C:\\From File", Get(setting));
    WriteSettings(key + "=" + std::string(3000, 'y'));
    EXPECT_EQ(std::wstring(3000, L'y'), Get(setting));
    WriteSettings(key + "=");
    EXPECT_EQ(L"", Get(setting));
    WriteSettings(key + "=..\\From, Here");
    const std::wstring above = common::ParentFolder(common::ParentFolder(m_dll)).c_str();
    const bool isList = setting.slot == 15 || setting.slot == 17;
    EXPECT_EQ(above + (isList ? L"\\From,Here" : L"\\From, Here"), Get(setting));
    ::SetEnvironmentVariableW(L"QM_TEST_PLACE", L"C:\\Place");
    const std::wstring place = isList ? L"%qm_test_place%\\Sub" : L"C:\\Place\\Sub";
    WriteSettings(key + "=%qm_test_place%\\Sub");
    EXPECT_EQ(place, Get(setting));
    set(L"%qm_test_place%\\Sub");
    EXPECT_EQ(place, Get(setting));
    set(L"C:\\From Environment");
    EXPECT_EQ(L"C:\\From Environment", Get(setting));
    set(longValue.c_str());
    EXPECT_EQ(longValue, Get(setting));
    set(L".\\as it is");
    EXPECT_EQ(L".\\as it is", Get(setting)) << "no file says it, so that there is no folder";
    WriteSettings(key + "=C:\\From File\r\n");
    set(L"");
    EXPECT_EQ(L"", Get(setting)) << "set to nothing";
    set(nullptr);
    EXPECT_EQ(L"C:\\From File", Get(setting));

    Variant value;
    EXPECT_EQ(S_OK, Invoke(m_services.Get(), setting.member, kByName, nullptr, &value));
    EXPECT_EQ(L"C:\\From File", common::ViewOf(value.bstrVal));
    EXPECT_EQ(E_POINTER,
              CallSlotWithNull(m_services.Get(), setting.slot, static_cast<void*>(nullptr)));
  }
}

TEST_F(ApplicationServicesTest, ReservedOperationsAreNotImplemented) {
  for (size_t slot = 2; slot <= 12; ++slot) {
    auto value = reinterpret_cast<BSTR>(this);  // must be overwritten
    EXPECT_EQ(E_NOTIMPL, CallSlot(m_services.Get(), slot, &value)) << slot;
    EXPECT_EQ(nullptr, value);
    EXPECT_FALSE(TakeDescription().empty());
    EXPECT_EQ(E_POINTER, CallSlotWithNull(m_services.Get(), slot, static_cast<void*>(nullptr)));
  }
}

TEST_F(ApplicationServicesTest, ASettingsFileThatCannotBeReadIsAFailure) {
  WriteSettings("DataDir=C:\\Data");
  const std::wstring path = m_folder / L"QmAppServices.ini";
  HANDLE lock = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  common::UniqueBstr value;
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION), m_services->get_DataFolder(value.Put()));
  EXPECT_THAT(TakeDescription(), StartsWith(path + L": "));
  ::CloseHandle(lock);
  EXPECT_EQ(S_OK, m_services->get_DataFolder(value.Put()));
}

TEST_F(ApplicationServicesTest, ObjectsLockTheComponent) {
  EXPECT_EQ(S_FALSE, m_component->DllCanUnloadNow());
  m_services.Release();
  EXPECT_EQ(S_OK, m_component->DllCanUnloadNow());
  void* none = this;
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
            m_component->DllGetClassObject(CLSID_IniReader, __uuidof(IClassFactory), &none));
  EXPECT_EQ(nullptr, none);
}

}  // namespace

}  // namespace qm::tests
