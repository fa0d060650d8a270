#pragma once

#include <exception>
#include <map>
#include <optional>
#include <string>

#include "image/Database.h"
#include "msidb/ModuleDatabase.h"
#include "msidb/ModuleFile.h"

namespace msidb {

/// A module's database as image/ reads it from the bytes of the file.
///
/// A failure has the code and the call that the installer's would have, and in place of the
/// installer's text one sentence on what is wrong with the file.
class ImageDatabase final : public ModuleDatabase {
 public:
  explicit ImageDatabase(const CWideString& path);

  /// Whether the reader knows everything that it met in the file.
  bool IsOfKnownKind() const;

  /// Reads all tables and the summary information and follows all streams; raises the first damage,
  /// and what is suspicious about the file.
  void Verify();

  bool HasTable(const wchar_t* table) const override;
  std::unique_ptr<TableRows> ReadTable(const wchar_t* table, const wchar_t* orderBy) const override;
  CWideString ReadSummaryString(UINT property) override;
  bool LoadAndClose(std::initializer_list<const wchar_t*> tables) override;
  bool IsCurrent() const override;
  void RequireUnchanged() const override;

 private:
  /// A table that was read ahead, or why it could not be.
  struct LoadedTable {
    std::optional<qm::image::Rows> rows;
    std::exception_ptr failure;
  };

  qm::image::Rows RowsOf(const std::string& table) const;

  CWideString m_path;
  std::optional<ModuleFile> m_file;  ///< nothing once it was closed
  FileStamp m_stamp;
  // Reading a table goes on in the file, but changes nothing that a caller could tell.
  mutable std::optional<qm::image::Database> m_database;
  std::map<std::string, LoadedTable> m_loaded;
  std::optional<qm::image::SummaryInformation> m_summary;
  bool m_isSummaryRead = false;
};

}  // namespace msidb
