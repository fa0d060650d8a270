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

namespace qm::tests {

/// The built server.
class ServerLibrary : public ComDll {
 public:
  static std::wstring Path() { return (ProgramFolder() / L"QmMMUpdater2.dll").wstring(); }

  /// Loads the server and replaces those of its imports that can fail on demand.
  void Load(const std::wstring& path = Path()) {
    ComDll::Load(path);
    m_imports.emplace(Module());
  }
  void Unload() {
    m_imports.reset();
    ComDll::Unload();
  }

  common::ComPtr<IClassFactory> Factory(REFCLSID clsid = CLSID_MergeModule2) const {
    return ComDll::Factory(clsid);
  }
  /// A new module object on which nothing is open; null if it cannot be created.
  common::ComPtr<IMergeModuleTavik> NewModule() const {
    return Create<IMergeModuleTavik>(CLSID_MergeModule2);
  }

 private:
  std::optional<ReplacedImports> m_imports;
};

/// Opens a module file.
HRESULT Open(IMergeModule* module, const std::wstring& path);

/// Loads the server, and checks after the test that neither of them has left anything behind.
class ServerFixture : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Makes the server create what it keeps while it is loaded. What is alive then is the state to
  /// which the test must return.
  virtual void Settle();
  /// For sweeps: the server unloads its siblings whenever it is idle, and loading them again would
  /// take most of the time.
  void KeepSiblingsLoaded();
  void ExpectNothingLeft() const { EXPECT_EQ(m_before, Alive()); }

  common::ComPtr<IMergeModuleTavik> NewModule() const { return m_server.NewModule(); }
  /// A new module object with the file open.
  common::ComPtr<IMergeModuleTavik> OpenModule(const std::wstring& path) const;
  /// The same with a new rich module.
  common::ComPtr<IMergeModuleTavik> OpenRichModule() const;

  ServerLibrary m_server;
  std::wstring m_serverPath = ServerLibrary::Path();  ///< which server SetUp loads
  TestFolder m_folder;
  std::wstring m_rich = m_folder / L"rich.msm";  ///< path of the rich module

 private:
  /// Lists what is alive now and could leak. Closes installer handles that were left open.
  std::string Alive() const;

  std::string m_before;
  std::vector<HMODULE> m_siblings;
};

}  // namespace qm::tests
