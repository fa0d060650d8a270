#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "tests/fakes/Imports.h"
#include "tests/support/ComDll.h"
#include "tests/support/TestFolder.h"

/// The built server.
class CServerLibrary : public CComDll {
 public:
  static std::wstring Path() { return (ProgramFolder() / L"QmMMUpdater2.dll").wstring(); }

  /// Loads the server, with the imports replaced that can fail on demand.
  void Load(const std::wstring& path = Path()) {
    CComDll::Load(path);
    m_imports.emplace(Module());
  }
  void Unload() {
    m_imports.reset();
    CComDll::Unload();
  }

  CComPtr<IClassFactory> Factory(REFCLSID clsid = CLSID_MergeModule2) const {
    return CComDll::Factory(clsid);
  }
  /// A new module object on which nothing is open; null if it cannot be created.
  CComPtr<IMergeModuleTavik> NewModule() const {
    return Create<IMergeModuleTavik>(CLSID_MergeModule2);
  }

 private:
  std::optional<CReplacedImports> m_imports;
};

/// Opens a module file.
HRESULT Open(IMergeModule* module, const std::wstring& path);

/// Loads the server, and checks after the test that nothing of what it or the test made is left.
class CServerTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Makes the server create what it keeps for good, and takes what is alive then as the state to
  /// which the test has to return.
  virtual void Settle();
  /// For sweeps: the server unloads its siblings whenever nothing is alive, and loading them again
  /// would take most of the time.
  void KeepSiblingsLoaded();
  void ExpectNothingLeft() const { EXPECT_EQ(m_before, Alive()); }

  CComPtr<IMergeModuleTavik> NewModule() const { return m_server.NewModule(); }
  /// A new module object with the file open.
  CComPtr<IMergeModuleTavik> OpenModule(const std::wstring& path) const;
  /// The same with a new rich module.
  CComPtr<IMergeModuleTavik> OpenRichModule() const;

  CServerLibrary m_server;
  std::wstring m_serverPath = CServerLibrary::Path();  ///< which server SetUp loads
  CTestFolder m_folder;
  std::wstring m_rich = m_folder / L"rich.msm";  ///< path of the rich module

 private:
  /// What is alive now of all that can leak. Closes installer handles that were left open.
  std::string Alive() const;

  std::string m_before;
  std::vector<HMODULE> m_siblings;
};
