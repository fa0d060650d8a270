#pragma once

#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace qm::msidb {

/// Owns an open installer database. Failures are raised, see ReportInstallerResult.
class Database {
 public:
  /// Opens the file at `path` for reading. A path of MAX_PATH characters or more fails with
  /// ERROR_FILENAME_EXCED_RANGE.
  static Database OpenReadOnly(const common::WideString& path);

  /// As OpenReadOnly, in the mode `persist`, one of the MSIDBOPEN_ values.
  static Database Open(const common::WideString& path, const wchar_t* persist);

  MSIHANDLE Get() const noexcept { return m_handle.Get(); }

  /// Returns whether the database has the table, persistent or temporary.
  bool HasTable(const wchar_t* table) const;

  /// Imports the table archive file (.idt) `fileName` in `folder`.
  void Import(const common::WideString& folder, const common::WideString& fileName);

  /// Exports `table` to the table archive file `fileName` in `folder`. Not called by the server.
  void Export(const common::WideString& table, const common::WideString& folder,
              const common::WideString& fileName) const;

  void Commit();

 private:
  explicit Database(MsiHandle handle) noexcept : m_handle(std::move(handle)) {}

  MsiHandle m_handle;
};

}  // namespace qm::msidb
