#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/ModuleBuilder.h"
#include "tests/support/ServerFixture.h"

namespace qm::tests {

/// Base of tests of catalogs. Each test has a folder of its own: environment variables make it the
/// only one that the application services know.
class CatalogFixture : public ServerFixture {
 protected:
  void SetUp() override;
  void TearDown() override;
  void Settle() override;

  /// Calls `m_whenOpened` once, before the server opens the next file.
  void WatchOpenedFiles() const;

  /// Sets the search path of catalogs created from now on. "*" stands for the test's folder:
  /// "*one,*two".
  void SetSearchPath(std::wstring path) const;

  /// Makes the process drop all modules of catalogs that no longer exist.
  void ForgetAll() const;

  /// A new catalog; null if it cannot be created.
  common::ComPtr<IMMCatalogCaskel> NewCatalog() const {
    return m_server.Create<IMMCatalogCaskel>(CLSID_MMCatalog);
  }

  /// Creates the folders on the way to `path` in the test's folder and returns the full path.
  std::wstring PathOf(const std::wstring& path) const;

  /// Makes a module file with a signature and a summary; `path` as for PathOf. Returns the full
  /// path.
  std::wstring WriteModule(const std::wstring& path, const std::string& id,
                           const std::string& version = "1.0", int language = 1033) const;

  /// Writes a file of any content; `path` as for PathOf.
  void WriteText(const std::wstring& path, const std::string& content) const;

  /// Makes the gallery description `name` of a module without a file.
  void WriteDescription(const std::wstring& name, const std::string& moduleId,
                        const std::string& version = "1.0", int language = 1033) const;

  static inline std::function<void()> m_whenOpened;

 private:
  static HANDLE WINAPI OpenFile(const wchar_t* path, DWORD access, DWORD share,
                                SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                HANDLE fileTemplate);
};

/// The list of the catalog; a failure fails the test and returns null.
common::ComPtr<IMergeModules> ModulesOf(IMMCatalog* catalog);

/// The keys of modules, separated by blanks; "?" for an empty one.
std::wstring KeysOf(IMergeModules* modules);
inline std::wstring KeysOf(IMMCatalog* catalog) { return KeysOf(ModulesOf(catalog).Get()); }

/// A module of a list, by its position from 1.
common::ComPtr<IMergeModuleTavik> ModuleAt(IMergeModules* modules, long position);

/// The keys of the modules that FindModule finds.
std::wstring Find(IMMCatalogVelmora* catalog, const wchar_t* key, const wchar_t* version = L"");

/// How often the server opened a database or a summary stream: twice for each module file.
int FilesOpened();

}  // namespace qm::tests
