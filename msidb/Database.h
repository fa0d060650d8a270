#pragma once

#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace msidb {

/// An open installer database, closed with the object. Failures are raised, see
/// ReportInstallerResult.
class Database {
 public:
  /// Opens the file at `path` for reading.
  static Database OpenReadOnly(const CWideString& path);

  /// Opens the file at `path`; `persist` is one of the MSIDBOPEN_ values.
  static Database Open(const CWideString& path, const wchar_t* persist);

  MSIHANDLE Get() const noexcept { return m_handle.Get(); }

  /// Whether the table is there, persistent or temporary.
  bool HasTable(const wchar_t* table) const;

  /// Imports the table archive file `fileName` (.idt) of `folder`.
  void Import(const CWideString& folder, const CWideString& fileName);

  /// Exports `table` into the table archive file `fileName` of `folder`. No caller in the server.
  void Export(const CWideString& table, const CWideString& folder,
              const CWideString& fileName) const;

  void Commit();

 private:
  explicit Database(CMsiHandle handle) noexcept : m_handle(std::move(handle)) {}

  CMsiHandle m_handle;
};

}  // namespace msidb
