#include "server/loader/ComponentLoader.h"

#include <shlwapi.h>

#include "common/Path.h"
#include "common/SystemFolders.h"
#include "common/SystemText.h"
#include "server/error/Raise.h"
#include "server/error/win32_exception.h"
#include "server/frame/ComModule.h"

namespace {

bool FileExists(const CWideString& path) noexcept {
  return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// Raises `hr` under the name of a DLL: with what the failed component left on the thread, else
/// with the system's text.
[[noreturn]] void RaiseFor(const wchar_t* dll, HRESULT hr) {
  com_exception failure(hr);
  failure.description = CWideString(dll) + L": " + failure.description;
  Raise(failure);
}

[[noreturn]] void RaiseFor(const wchar_t* dll, DWORD code) {
  ::SetErrorInfo(0, nullptr);  // a Win32 failure has none
  RaiseFor(dll, qm::HResultFromCode(code));
}

/// Makes a folder the current one for as long as the object lives, so that a DLL finds those that
/// it needs itself beside it.
class CurrentFolder {
 public:
  explicit CurrentFolder(const CWideString& folder) {
    const DWORD size = ::GetCurrentDirectoryW(0, nullptr);
    m_previous.resize(size);
    m_previous.resize(::GetCurrentDirectoryW(size, m_previous.data()));
    ::SetCurrentDirectoryW(folder.c_str());
  }
  ~CurrentFolder() { ::SetCurrentDirectoryW(m_previous.c_str()); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  std::wstring m_previous;
};

/// An exported function, or null. By way of void*: the compiler warns of casts between function
/// types.
template <class Function>
Function ExportOf(HMODULE module, const char* name) noexcept {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

}  // namespace

CComponentLoader::CComponentLoader(CWideString serverFolder, CWideString commonFilesFolder)
    : m_strServerFolder(std::move(serverFolder)),
      m_strCommonFilesFolder(std::move(commonFilesFolder)) {}

CComponentLoader& CComponentLoader::Instance() {
  static CComponentLoader loader(FolderOf(ModulePath(CComModule::Instance().ModuleInstance())),
                                 GetProgramFolder(kCommonFiles));
  return loader;
}

bool CComponentLoader::IgnoringCase::operator()(const CWideString& a,
                                                const CWideString& b) const noexcept {
  return ::_wcsicmp(a.c_str(), b.c_str()) < 0;
}

CWideString CComponentLoader::FindSystemFolder(const wchar_t* dll) const {
  CWideString folder = m_strServerFolder;
  while (!::PathIsRootW(folder.c_str()) && !folder.empty()) {
    // The root of a drive keeps its backslash.
    CWideString parent = FolderOf(folder);
    if (parent.length() == 2) {
      parent += L"\\";
    }
    folder = std::move(parent);
    CWideString candidate = JoinPath(folder, L"System");
    if (::PathFileExistsW(JoinPath(candidate, dll).c_str())) {
      return candidate;
    }
  }
  return {};
}

CWideString CComponentLoader::Find(const wchar_t* dll) const {
  if (std::wcschr(dll, L'\\')) {
    return dll;
  }
  const CWideString folders[] = {m_strServerFolder, JoinPath(m_strServerFolder, L"System"),
                                 JoinPath(m_strCommonFilesFolder, L"Quillmark")};
  for (const CWideString& folder : folders) {
    CWideString path = JoinPath(folder, dll);
    if (FileExists(path)) {
      return path;
    }
  }
  return {};
}

/// The module, or null and the code of the failure. `path` is where the DLL lies, empty when it was
/// not found.
HMODULE CComponentLoader::TryLoad(const wchar_t* dll, const CWideString& path, DWORD& code) {
  if (path.empty()) {
    code = ERROR_MOD_NOT_FOUND;
    return nullptr;
  }
  // The place in the map comes first: once the DLL is loaded nothing can fail any more.
  const auto entry = m_loaded.emplace(dll, nullptr).first;
  {
    const CurrentFolder folder(FolderOf(path));
    entry->second = ::LoadLibraryW(path.c_str());
    code = ::GetLastError();
  }
  const HMODULE module = entry->second;
  if (!module) {
    m_loaded.erase(entry);
  }
  return module;
}

void* CComponentLoader::AddressOf(const wchar_t* dll, const char* name) {
  DWORD code = ERROR_SUCCESS;
  const auto loaded = m_loaded.find(dll);
  HMODULE module = loaded != m_loaded.end() ? loaded->second : nullptr;
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
  DWORD code = ERROR_SUCCESS;
  const auto loaded = m_loaded.find(dll);
  const HMODULE module = loaded != m_loaded.end() ? loaded->second : TryLoad(dll, Find(dll), code);
  if (!module) {
    constexpr DWORD anyServer =
        CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
    if (FAILED(::CoCreateInstance(clsid, nullptr, anyServer, iid, out))) {
      // Why the product's own component cannot be had says more than that no other is registered.
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
  for (auto entry = m_loaded.begin(); entry != m_loaded.end();) {
    const auto canUnload = ExportOf<HRESULT(WINAPI*)()>(entry->second, "DllCanUnloadNow");
    if (canUnload && canUnload() == S_OK) {
      ::FreeLibrary(entry->second);
      entry = m_loaded.erase(entry);
    } else {
      ++entry;
    }
  }
}
