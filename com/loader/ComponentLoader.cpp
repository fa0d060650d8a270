#include "com/loader/ComponentLoader.h"

#include <shlwapi.h>

#include "com/error/Raise.h"
#include "com/error/win32_exception.h"
#include "com/frame/ApartmentGate.h"
#include "com/frame/ApartmentPtr.h"
#include "com/frame/ComServer.h"
#include "com/frame/DllPath.h"
#include "common/DllLifetime.h"
#include "common/Path.h"
#include "common/ScopeGuard.h"
#include "common/SystemFolders.h"
#include "common/SystemMessage.h"

namespace qm::com {

namespace {

/// Raises `hr`. The description begins with the DLL's name; the rest is from the thread's error
/// object, or else the system's message.
[[noreturn]] void RaiseDllFailure(const wchar_t* dll, HRESULT hr) {
  com_exception failure(hr);
  failure.description = common::WideString(dll) + L": " + failure.description;
  Raise(failure);
}

[[noreturn]] void RaiseDllFailure(const wchar_t* dll, DWORD code) {
  ::SetErrorInfo(0, nullptr);  // a Win32 failure has no error object
  RaiseDllFailure(dll, HResultFromCode(code));
}

/// Returns the current folder; empty if the system does not report it.
std::wstring GetCurrentFolder() {
  const DWORD size = ::GetCurrentDirectoryW(0, nullptr);
  std::wstring folder(size, L'\0');
  folder.resize(::GetCurrentDirectoryW(size, folder.data()));
  return folder;
}

common::DllWide<ComponentLoader> theLoader;

/// Returns an exported function, or null. Casts through void*, because the compiler warns about
/// casts between function types.
template <class Function>
Function GetExport(HMODULE module, const char* name) noexcept {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

}  // namespace

ComponentLoader::ComponentLoader(common::WideString serverFolder,
                                 common::WideString commonFilesFolder)
    : m_strServerFolder(std::move(serverFolder)),
      m_strCommonFilesFolder(std::move(commonFilesFolder)) {}

ComponentLoader& ComponentLoader::Instance() {
  return theLoader.Get([] {
    return new ComponentLoader(common::ParentFolder(DllPath(ComServer::Instance().DllInstance())),
                               common::GetProgramFolder(common::kCommonFiles));
  });
}

void UnloadIdleSiblings() noexcept {
  if (ComponentLoader* const loader = theLoader.Find()) {
    loader->UnloadIdle();
  }
}

bool ComponentLoader::IgnoringCase::operator()(const common::WideString& a,
                                               const common::WideString& b) const noexcept {
  return common::CompareFileNames(a, b) < 0;
}

bool ComponentLoader::IgnoringCase::operator()(const common::WideString& a,
                                               const wchar_t* b) const noexcept {
  return common::CompareFileNames(a, b) < 0;
}

bool ComponentLoader::IgnoringCase::operator()(const wchar_t* a,
                                               const common::WideString& b) const noexcept {
  return common::CompareFileNames(a, b) < 0;
}

common::WideString ComponentLoader::FindSystemFolder(const wchar_t* dll) const {
  common::WideString folder = m_strServerFolder;
  while (!folder.empty() && !::PathIsRootW(folder.c_str())) {
    folder = common::ParentFolder(folder);
    if (folder.empty()) {
      break;  // a relative path has no folders above it
    }
    common::WideString candidate = common::JoinPath(folder, L"System");
    if (::PathFileExistsW(common::JoinPath(candidate, dll).c_str())) {
      return candidate;
    }
  }
  return {};
}

/// Returns the full path of the DLL. Empty if none of the places has it.
common::WideString ComponentLoader::FindDllPath(const wchar_t* dll) const {
  if (std::wcschr(dll, L'\\')) {
    return common::ResolveFullPath(dll);
  }
  const struct {
    const common::WideString& base;
    const wchar_t* below;
  } places[] = {{m_strServerFolder, L""},
                {m_strServerFolder, L"System"},
                {m_strCommonFilesFolder, L"Quillmark"}};
  for (const auto& place : places) {
    if (place.base.empty()) {
      continue;  // without a base the path would be relative to the current folder
    }
    common::WideString path = common::JoinPath(common::JoinPath(place.base, place.below), dll);
    if (common::PathExists(path)) {
      return path;
    }
  }
  return {};
}

HMODULE ComponentLoader::FindLoadedDll(const wchar_t* dll) const noexcept {
  const auto loaded = m_loaded.find(dll);
  return loaded == m_loaded.end() ? nullptr : loaded->second;
}

/// Loads the DLL at `path`, which is empty if the DLL was not found. On failure returns null and
/// sets `code` to the Win32 code.
HMODULE ComponentLoader::TryLoad(const wchar_t* dll, const common::WideString& path, DWORD& code) {
  if (path.empty()) {
    code = ERROR_MOD_NOT_FOUND;
    return nullptr;
  }
  DWORD previousMode = 0;
  ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previousMode);
  const common::ScopeGuard mode([&]() noexcept { ::SetThreadErrorMode(previousMode, nullptr); });
  // A DLL finds dependencies in its own folder only if that is the current one. The current folder
  // is changed only if it can be restored.
  const std::wstring previousFolder = GetCurrentFolder();
  if (!previousFolder.empty()) {
    ::SetCurrentDirectoryW(common::ParentFolder(path).c_str());
  }
  const common::ScopeGuard folder([&]() noexcept {
    if (!previousFolder.empty()) {
      ::SetCurrentDirectoryW(previousFolder.c_str());
    }
  });
  // Inserts the map entry first, so that nothing can fail after the DLL is loaded.
  const auto entry = m_loaded.emplace(dll, nullptr).first;
  const HMODULE module = ::LoadLibraryW(path.c_str());
  code = ::GetLastError();
  entry->second = module;
  if (!module) {
    m_loaded.erase(entry);
  }
  return module;
}

void* ComponentLoader::GetFunctionAddress(const wchar_t* dll, const char* name) {
  const ScopedGateEntry pass;
  DWORD code = ERROR_SUCCESS;
  HMODULE module = FindLoadedDll(dll);
  if (!module) {
    common::WideString path = FindDllPath(dll);
    if (path.empty()) {
      const common::WideString folder = FindSystemFolder(dll);
      path = folder.empty() ? folder : common::JoinPath(folder, dll);
    }
    module = TryLoad(dll, path, code);
  }
  if (!module) {
    RaiseDllFailure(dll, code);
  }
  void* const address = GetExport<void*>(module, name);
  if (!address) {
    RaiseDllFailure(dll, static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
  }
  return address;
}

void ComponentLoader::Create(const wchar_t* dll, REFCLSID clsid, REFIID iid, void** out) {
  const ScopedGateEntry pass;
  DWORD code = ERROR_SUCCESS;
  HMODULE module = FindLoadedDll(dll);
  if (!module) {
    module = TryLoad(dll, FindDllPath(dll), code);
  }
  if (!module) {
    constexpr DWORD anyServer =
        CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
    if (FAILED(::CoCreateInstance(clsid, nullptr, anyServer, iid, out))) {
      // Reports why the product's own component failed to load, not that no other one is
      // registered.
      RaiseDllFailure(dll, code);
    }
    return;
  }
  const auto getClassObject =
      GetExport<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(module, "DllGetClassObject");
  if (!getClassObject) {
    RaiseDllFailure(dll, static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
  }
  common::ComPtr<IClassFactory> factory;
  HRESULT hr =
      getClassObject(clsid, __uuidof(IClassFactory), reinterpret_cast<void**>(factory.Put()));
  if (SUCCEEDED(hr) && factory) {
    hr = factory->CreateInstance(nullptr, iid, out);
  }
  if (SUCCEEDED(hr) && !*out) {
    hr = E_UNEXPECTED;  // success without an object
  }
  if (FAILED(hr)) {
    RaiseDllFailure(dll, hr);
  }
}

void ComponentLoader::UnloadIdle() noexcept {
  ApartmentGate& gate = ApartmentGate::Instance();
  if (!gate.TryEnter()) {
    return;
  }
  ReleaseQueuedReferences();  // they would keep siblings in use
  for (auto entry = m_loaded.begin(); entry != m_loaded.end();) {
    const auto canUnload = GetExport<HRESULT(WINAPI*)()>(entry->second, "DllCanUnloadNow");
    if (canUnload && canUnload() == S_OK) {
      ::FreeLibrary(entry->second);
      entry = m_loaded.erase(entry);
    } else {
      ++entry;
    }
  }
  gate.Leave();
}

}  // namespace qm::com
