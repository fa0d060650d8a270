#include "tests/support/ServerFixture.h"

#include <filesystem>

#include "common/Bstr.h"
#include "msidb/MsiHandle.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"
#include "tests/support/ModuleBuilder.h"
#include "tests/support/TaskMemory.h"

namespace qm::tests {

HRESULT Open(IMergeModule* module, const std::wstring& path) {
  return module->Open(common::UniqueBstr(common::TryAllocateBstr(path)).Get());
}

void ServerFixture::SetUp() {
  CountTaskMemory();
  ASSERT_EQ(S_OK, ::CoInitialize(nullptr));
  m_server.Load(m_serverPath);
  Settle();
}

void ServerFixture::TearDown() {
  ExpectNothingLeft();
  for (const HMODULE sibling : m_siblings) {
    ::FreeLibrary(sibling);
  }
  ::CoUninitialize();
  m_server.Unload();
  // COM does not let a DLL go that is locked, as after a script whose engine leaks; the next test
  // must begin with a new one nevertheless.
  while (const HMODULE left = ::GetModuleHandleW(m_serverPath.c_str())) {
    ::FreeLibrary(left);
  }
}

void ServerFixture::KeepSiblingsLoaded() {
  for (const wchar_t* const name : {L"QmAppServices.dll", L"Gleaner.dll", L"Corvane8.dll"}) {
    const auto path = std::filesystem::path(m_serverPath).replace_filename(name);
    m_siblings.push_back(::LoadLibraryW(path.c_str()));
    EXPECT_TRUE(m_siblings.back());
  }
}

void ServerFixture::Settle() {
  // The library that all automation libraries refer to is loaded when the first reference is
  // followed, and would count as a leak.
  static ITypeLib* s_standardLibrary = nullptr;
  if (!s_standardLibrary) {
    ::LoadTypeLib(L"stdole2.tlb", &s_standardLibrary);
  }
  // The type library, the first error object.
  Open(NewModule().Get(), m_folder / L"missing.msm");
  ReadModule(OpenRichModule().Get(), Route::Dispatch);
  m_before = Alive();
}

std::string ServerFixture::Alive() const {
  ::SetErrorInfo(0, nullptr);
  const bool locked = m_server.DllCanUnloadNow() != S_OK;
  return std::to_string(TaskMemoryBlocks()) + " blocks of task memory, " +
         std::to_string(HeapBlocks()) + " of the server's heap, " +
         std::to_string(::MsiCloseAllHandles()) + " installer handles, " +
         std::to_string(FileSearches()) + " file searches, " + std::to_string(OpenFiles()) +
         " files, " + (locked ? "locked" : "not locked");
}

common::ComPtr<IMergeModuleTavik> ServerFixture::OpenModule(const std::wstring& path) const {
  common::ComPtr<IMergeModuleTavik> module = NewModule();
  EXPECT_EQ(S_OK, Open(module.Get(), path));
  return module;
}

common::ComPtr<IMergeModuleTavik> ServerFixture::OpenRichModule() const {
  BuildRichModule(m_rich);
  return OpenModule(m_rich);
}

}  // namespace qm::tests
