#pragma once

#include <exception>
#include <map>
#include <optional>
#include <string>

#include "image/Database.h"
#include "msidb/ModuleDatabase.h"
#include "msidb/ModuleFile.h"

namespace qm::msidb {

/// A module's database, read from the bytes of the file by image/.
///
/// A failure has the code and the call that it would have if the installer had reported it. In
/// place of the installer's text, its description has a sentence on what is wrong with the file.
/// Not thread-safe.
class ImageDatabase final : public ModuleDatabase {
 public:
  /// Opens the file at the full path `path`, of any length.
  explicit ImageDatabase(const common::WideString& path);

  /// Returns whether the reader fully understands the file; see image::Database::UnknownKind.
  bool IsSupported() const;

  /// Reads all tables and the summary information and follows all streams. Raises the first damage
  /// or suspicious defect.
  void Verify();

  bool HasTable(const wchar_t* table) const override;
  std::unique_ptr<RowCursor> ReadTable(const wchar_t* table, const wchar_t* orderBy) const override;
  common::WideString ReadSummaryString(UINT property) override;
  HANDLE OpenFile() const noexcept override { return m_file ? m_file->Handle() : nullptr; }
  bool LoadAndClose(std::initializer_list<const wchar_t*> tables) override;
  bool IsCurrent() const override;
  void RequireUnchanged() const override;

 private:
  /// A table that LoadAndClose read, or the exception that it failed with.
  struct LoadedTable {
    std::optional<image::TableRows> rows;
    std::exception_ptr failure;
  };

  image::TableRows GetRows(const std::string& table) const;

  common::WideString m_path;
  std::optional<ModuleFile> m_file;  ///< empty after LoadAndClose
  common::FileStamp m_stamp;
  // Mutable because reading a table moves the file position, which no caller can observe.
  mutable std::optional<image::Database> m_database;
  std::map<std::string, LoadedTable> m_loaded;
  std::optional<image::SummaryInformation> m_summary;
  bool m_isSummaryRead = false;
};

}  // namespace qm::msidb
