#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/ModuleBuilder.h"
#include "tests/support/ServerFixture.h"

/// Tests of catalogs over folders of their own: the application services are told by environment
/// variables to look nowhere but below the test's folder.
class CCatalogTest : public CServerTest {
 protected:
  void SetUp() override;
  void TearDown() override;
  void Settle() override;

  /// Makes the server do `m_whenOpened`, once, before it opens a file.
  void WatchOpenedFiles() const;

  /// Has the catalogs that are made from now on search `path`, with folders of the test's folder
  /// for the "*" in it: "*one,*two".
  void SetSearchPath(std::wstring path) const;

  /// Has the process forget all modules of catalogs that are no more.
  void ForgetAll() const;

  /// A new catalog; none when it cannot be created.
  CComPtr<IMMCatalogCaskel> NewCatalog() const {
    return m_server.Create<IMMCatalogCaskel>(CLSID_MMCatalog);
  }

  /// Makes folders of the test's folder on the way to `path` and gives the full path.
  std::wstring PathOf(const std::wstring& path) const;

  /// Makes a module file with a signature and a summary; `path` as for PathOf. Gives the full path.
  std::wstring WriteModule(const std::wstring& path, const std::string& id,
                           const std::string& version = "1.0", int language = 1033) const;

  /// Writes a file of any content; `path` as for PathOf.
  void WriteText(const std::wstring& path, const std::string& content) const;

  /// Makes the description `name` of the gallery, of a module without a file.
  void WriteDescription(const std::wstring& name, const std::string& moduleId,
                        const std::string& version = "1.0", int language = 1033) const;

  static inline std::function<void()> m_whenOpened;

 private:
  static HANDLE WINAPI OpenFile(const wchar_t* path, DWORD access, DWORD share,
                                SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                HANDLE fileTemplate);
};

/// The list of the catalog; none, with the failure as a test failure, when it has none.
CComPtr<IMergeModules> ModulesOf(IMMCatalog* catalog);

/// The keys of modules, divided by blanks; "?" for an empty one.
std::wstring KeysOf(IMergeModules* modules);
inline std::wstring KeysOf(IMMCatalog* catalog) { return KeysOf(ModulesOf(catalog).Get()); }

/// A module of a list, by its position from 1.
CComPtr<IMergeModuleTavik> ModuleAt(IMergeModules* modules, long position);

/// The keys of the modules that FindModule finds.
std::wstring Find(IMMCatalogVelmora* catalog, const wchar_t* key, const wchar_t* version = L"");

/// How often the server opened a database or a summary stream: twice for each module file.
int FilesOpened();
