#include "msidb/Database.h"

#include "msidb/InstallerResult.h"

namespace qm::msidb {

Database Database::OpenReadOnly(const common::WideString& path) {
  return Open(path, MSIDBOPEN_READONLY);
}

Database Database::Open(const common::WideString& path, const wchar_t* persist) {
  if (path.length() >= MAX_PATH) {  // some installers copy it to a stack buffer unchecked
    RaiseFileFailure(ERROR_FILENAME_EXCED_RANGE, {}, L"MsiOpenDatabase", path.c_str());
  }
  // The DLL is delay-loaded: if it is missing, the first call of one of its functions would end the
  // process.
  static const HMODULE installer = ::LoadLibraryW(L"msi.dll");
  if (!installer) {
    RaiseFileFailure(ERROR_MOD_NOT_FOUND, {}, L"MsiOpenDatabase", path.c_str());
  }
  MsiHandle handle;
  ReportInstallerResult(::MsiOpenDatabaseW(path.c_str(), persist, handle.Put()), L"MsiOpenDatabase",
                        path.c_str());
  return Database(std::move(handle));
}

bool Database::HasTable(const wchar_t* table) const {
  switch (::MsiDatabaseIsTablePersistentW(Get(), table)) {
    case MSICONDITION_TRUE:
    case MSICONDITION_FALSE:
      return true;
    case MSICONDITION_NONE:
      return false;
    default:
      // The function does not report why it failed.
      ReportInstallerResult(ERROR_FUNCTION_FAILED, L"MsiDatabaseIsTablePersistent", table);
      return false;
  }
}

void Database::Import(const common::WideString& folder, const common::WideString& fileName) {
  ReportInstallerResult(::MsiDatabaseImportW(Get(), folder.c_str(), fileName.c_str()),
                        L"MsiDatabaseImport", folder.c_str(), fileName.c_str());
}

void Database::Export(const common::WideString& table, const common::WideString& folder,
                      const common::WideString& fileName) const {
  ReportInstallerResult(
      ::MsiDatabaseExportW(Get(), table.c_str(), folder.c_str(), fileName.c_str()),
      L"MsiDatabaseExport", table.c_str(), fileName.c_str());
}

void Database::Commit() { ReportInstallerResult(::MsiDatabaseCommit(Get()), L"MsiDatabaseCommit"); }

}  // namespace qm::msidb
