#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "catalog/SearchFolders.h"
#include "common/FileStamp.h"
#include "idl/openfiles.h"
#include "module/CacheMSM.h"

namespace qm::catalog {

/// Records; those of a folder are sorted by key and then by path.
using RecordList = std::vector<std::shared_ptr<module::CCacheMSM>>;

/// A search folder and the records of the module files (*.msm) in it. Use it only while owning the
/// ApartmentGate.
///
/// An update has two steps, so that a refresh finds changes before it reads anything: FindChanges
/// lists the folder, UpdateRecords reads what is new. A record is kept while its file has the
/// last-write time and the size that it had when it was read.
class Source {
 public:
  /// Creates a source that has not listed its folder yet. It takes over the records of
  /// `predecessor`, the source of the same folder with another description; null if the folder is
  /// new.
  Source(const SearchFolder& folder, const Source* predecessor);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source() = default;

  const SearchFolder& Folder() const noexcept { return m_folder; }

  /// Sets the current spelling of the folder in the search path. Throws std::bad_alloc.
  void SetEntry(const common::WideString& entry) { m_folder.entry = entry; }

  /// Lists the folder and returns whether Records() is out of date: a file was added, removed or
  /// rewritten, or has become readable. A missing folder has no files; a folder that cannot be
  /// listed keeps its files. Returns true until UpdateRecords has succeeded. Throws std::bad_alloc.
  bool FindChanges();

  /// The number of files that UpdateRecords will read.
  size_t CountUnread() const noexcept;

  /// Reads the files that have no record, and those that were rewritten, and calls `adopt` with
  /// every new record. Hands each file to `reader` too, unless that is null, and raises its
  /// failures. A file that cannot be read gets an incomplete record, unless the folder no longer
  /// lists it. Throws std::bad_alloc; what was read before is kept.
  template <class Adopt>
  void UpdateRecords(IOpenFileReader* reader, Adopt adopt) {
    for (File& file : m_files) {
      if (NeedsReading(file)) {
        auto record = ReadRecord(file, reader);
        if (record) {
          adopt(record);
        } else {
          file.stamp = {};  // if the file comes back unchanged, that is a change
        }
        file.record = std::move(record);
        file.readStamp = file.stamp;
      }
    }
    if (m_bChanged) {
      SetRecords();
    }
  }

  /// The records at the last UpdateRecords. UpdateRecords replaces the list and never changes it.
  const std::shared_ptr<const RecordList>& Records() const noexcept { return m_records; }

 private:
  struct File {
    common::WideString name;
    common::FileStamp stamp;      ///< from the last listing of the folder
    common::FileStamp readStamp;  ///< `stamp` when the record was read
    std::shared_ptr<module::CCacheMSM> record;
  };
  using Files = std::vector<File>;

  /// Returns whether a file has no record or was rewritten since the record was read. If neither,
  /// clears the record's recheck flag.
  static bool NeedsReading(const File& file) noexcept;

  void CompareWithFolder();
  void ReplaceFiles(Files others, size_t unchanged);
  void RetryIncomplete();
  std::shared_ptr<module::CCacheMSM> ReadRecord(const File& file, IOpenFileReader* reader) const;
  void SetRecords();

  SearchFolder m_folder;
  Files m_files;           ///< in the order of the file system's listing
  bool m_bChanged = true;  ///< whether Records() is out of date
  bool m_bAnyIncomplete = false;
  std::shared_ptr<const RecordList> m_records;
};

}  // namespace qm::catalog
