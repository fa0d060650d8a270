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

namespace {

/// Raises `hr`. The description begins with the DLL's name; the rest is from the thread's error
/// object, or else the system's message.
[[noreturn]] void RaiseFor(const wchar_t* dll, HRESULT hr) {
  com_exception failure(hr);
  failure.description = CWideString(dll) + L": " + failure.description;
  Raise(failure);
}

[[noreturn]] void RaiseFor(const wchar_t* dll, DWORD code) {
  ::SetErrorInfo(0, nullptr);  // a Win32 failure has no error object
  RaiseFor(dll, qm::HResultFromCode(code));
}

/// Returns the current folder; empty if the system does not report it.
std::wstring CurrentFolder() {
  const DWORD size = ::GetCurrentDirectoryW(0, nullptr);
  std::wstring folder(size, L'\0');
  folder.resize(::GetCurrentDirectoryW(size, folder.data()));
  return folder;
}

CModuleWide<CComponentLoader> theLoader;

/// Returns an exported function, or null. Casts through void*, because the compiler warns about
/// casts between function types.
template <class Function>
Function ExportOf(HMODULE module, const char* name) noexcept {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

}  // namespace

CComponentLoader::CComponentLoader(CWideString serverFolder, CWideString commonFilesFolder)
    : m_strServerFolder(std::move(serverFolder)),
      m_strCommonFilesFolder(std::move(commonFilesFolder)) {}

CComponentLoader& CComponentLoader::Instance() {
  return theLoader.Get([] {
    return new CComponentLoader(FolderOf(ModulePath(CComModule::Instance().ModuleInstance())),
                                GetProgramFolder(kCommonFiles));
  });
}

void UnloadIdleSiblings() noexcept {
  if (CComponentLoader* const loader = theLoader.Find()) {
    loader->UnloadIdle();
  }
}

bool CComponentLoader::IgnoringCase::operator()(const CWideString& a,
                                                const CWideString& b) const noexcept {
  return CompareFileNames(a, b) < 0;
}

bool CComponentLoader::IgnoringCase::operator()(const CWideString& a,
                                                const wchar_t* b) const noexcept {
  return CompareFileNames(a, b) < 0;
}

bool CComponentLoader::IgnoringCase::operator()(const wchar_t* a,
                                                const CWideString& b) const noexcept {
  return CompareFileNames(a, b) < 0;
}

CWideString CComponentLoader::FindSystemFolder(const wchar_t* dll) const {
  CWideString folder = m_strServerFolder;
  while (!folder.empty() && !::PathIsRootW(folder.c_str())) {
    folder = FolderOf(folder);
    if (folder.empty()) {
      break;  // a relative path has no folders above it
    }
    CWideString candidate = JoinPath(folder, L"System");
    if (::PathFileExistsW(JoinPath(candidate, dll).c_str())) {
      return candidate;
    }
  }
  return {};
}

/// Returns the full path of the DLL. Empty if none of the places has it.
CWideString CComponentLoader::Find(const wchar_t* dll) const {
  if (std::wcschr(dll, L'\\')) {
    return FullPath(dll);
  }
  const struct {
    const CWideString& base;
    const wchar_t* below;
  } places[] = {{m_strServerFolder, L""},
                {m_strServerFolder, L"System"},
                {m_strCommonFilesFolder, L"Quillmark"}};
  for (const auto& place : places) {
    if (place.base.empty()) {
      continue;  // without a base the path would be relative to the current folder
    }
    CWideString path = JoinPath(JoinPath(place.base, place.below), dll);
    if (PathExists(path)) {
      return path;
    }
  }
  return {};
}

HMODULE CComponentLoader::Loaded(const wchar_t* dll) const noexcept {
  const auto loaded = m_loaded.find(dll);
  return loaded == m_loaded.end() ? nullptr : loaded->second;
}

/// Loads the DLL at `path`, which is empty if the DLL was not found. On failure returns null and
/// sets `code` to the Win32 code.
HMODULE CComponentLoader::TryLoad(const wchar_t* dll, const CWideString& path, DWORD& code) {
  if (path.empty()) {
    code = ERROR_MOD_NOT_FOUND;
    return nullptr;
  }
  DWORD previousMode = 0;
  ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previousMode);
  const ScopeGuard mode([&]() noexcept { ::SetThreadErrorMode(previousMode, nullptr); });
  // A DLL finds its own dependencies beside it only if that is the current folder, which is changed
  // only if it can be restored.
  const std::wstring previousFolder = CurrentFolder();
  if (!previousFolder.empty()) {
    ::SetCurrentDirectoryW(FolderOf(path).c_str());
  }
  const ScopeGuard folder([&]() noexcept {
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

void* CComponentLoader::AddressOf(const wchar_t* dll, const char* name) {
  const CGatePass pass;
  DWORD code = ERROR_SUCCESS;
  HMODULE module = Loaded(dll);
  if (!module) {
    CWideString path = Find(dll);
    if (path.empty()) {
      const CWideString folder = FindSystemFolder(dll);
      path = folder.empty() ? folder : JoinPath(folder, dll);
    }
    module = TryLoad(dll, path, code);
  }
  if (!module) {
    RaiseFor(dll, code);
  }
  void* const address = ExportOf<void*>(module, name);
  if (!address) {
    RaiseFor(dll, static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
  }
  return address;
}

void CComponentLoader::Create(const wchar_t* dll, REFCLSID clsid, REFIID iid, void** out) {
  const CGatePass pass;
  DWORD code = ERROR_SUCCESS;
  HMODULE module = Loaded(dll);
  if (!module) {
    module = TryLoad(dll, Find(dll), code);
  }
  if (!module) {
    constexpr DWORD anyServer =
        CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
    if (FAILED(::CoCreateInstance(clsid, nullptr, anyServer, iid, out))) {
      // Reports why the product's own component failed to load, not that no other one is
      // registered.
      RaiseFor(dll, code);
    }
    return;
  }
  const auto getClassObject =
      ExportOf<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(module, "DllGetClassObject");
  if (!getClassObject) {
    RaiseFor(dll, static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
  }
  CComPtr<IClassFactory> factory;
  HRESULT hr =
      getClassObject(clsid, __uuidof(IClassFactory), reinterpret_cast<void**>(factory.Put()));
  if (SUCCEEDED(hr) && factory) {
    hr = factory->CreateInstance(nullptr, iid, out);
  }
  if (SUCCEEDED(hr) && !*out) {
    hr = E_UNEXPECTED;  // success without an object
  }
  if (FAILED(hr)) {
    RaiseFor(dll, hr);
  }
}

void CComponentLoader::UnloadIdle() noexcept {
  ApartmentGate& gate = ApartmentGate::Instance();
  if (!gate.TryEnter()) {
    return;
  }
  ReleaseReturnedReferences();  // they would keep siblings in use
  for (auto entry = m_loaded.begin(); entry != m_loaded.end();) {
    const auto canUnload = ExportOf<HRESULT(WINAPI*)()>(entry->second, "DllCanUnloadNow");
    if (canUnload && canUnload() == S_OK) {
      ::FreeLibrary(entry->second);
      entry = m_loaded.erase(entry);
    } else {
      ++entry;
    }
  }
  gate.Leave();
}
