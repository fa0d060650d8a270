#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "catalog/SearchFolders.h"
#include "common/FileStamp.h"
#include "module/CacheMSM.h"

/// The records of a folder in the order of their keys, those of one key in the order of their file
/// names.
using RecordList = std::vector<std::shared_ptr<CCacheMSM>>;

/// One search folder with the records of the module files (*.msm) that lie in it.
///
/// It works in two steps, so that a refresh can tell what changed before it reads anything: Recheck
/// lists the folder, UpdateRecords reads what is new. A record is kept as long as its file has the
/// last-write time and the size that it had when it was read.
class CSource {
 public:
  /// A source that has listed nothing yet. It takes over what `predecessor`, the source of the same
  /// folder under another description, has read. Null if the folder is new.
  CSource(const SearchFolder& folder, const CSource* predecessor);
  CSource(const CSource&) = delete;
  CSource& operator=(const CSource&) = delete;
  ~CSource() = default;

  const SearchFolder& Description() const noexcept { return m_folder; }

  /// Sets how the search path spells the folder now. Throws std::bad_alloc.
  void SetEntry(const CWideString& entry) { m_folder.entry = entry; }

  /// Lists the folder and says whether it differs from what Records gives: a file came, went or was
  /// rewritten, or one that could not be read now can be. A folder that is not there has no files,
  /// one that cannot be listed has those that it had. The answer stays true until UpdateRecords has
  /// succeeded. Throws std::bad_alloc.
  bool Recheck();

  /// Reads the files that have no record, and those that were rewritten. A file that cannot be read
  /// gets a record without identity, whatever the reason; one that the folder no longer lists gets
  /// none. `adopt` is called with every new
  /// record. Throws std::bad_alloc; what was read until then stays.
  template <class Adopt>
  void UpdateRecords(Adopt adopt) {
    for (File& file : m_files) {
      if (NeedsReading(file)) {
        auto record = Read(file);
        if (record) {
          adopt(record);
        } else {
          file.stamp = {};  // if it comes back as it was, that is a change
        }
        file.record = std::move(record);
        file.readStamp = file.stamp;
      }
    }
    if (m_bChanged) {
      SetRecords();
    }
  }

  /// The records as of the last UpdateRecords. The list is replaced, never changed.
  const std::shared_ptr<const RecordList>& Records() const noexcept { return m_records; }

 private:
  struct File {
    CWideString name;
    FileStamp stamp;      ///< as the folder was listed last
    FileStamp readStamp;  ///< as it was when the record was read
    std::shared_ptr<CCacheMSM> record;
  };
  using Files = std::vector<File>;

  static bool NeedsReading(const File& file) noexcept;

  void ListFolder();
  void ReplaceFiles(Files others, size_t unchanged);
  void RetryIncomplete();
  std::shared_ptr<CCacheMSM> Read(const File& file) const;
  void SetRecords();

  SearchFolder m_folder;
  Files m_files;  ///< in the order in which the file system lists them
  bool m_bChanged = true;
  bool m_bAnyIncomplete = false;
  std::shared_ptr<const RecordList> m_records;
};
