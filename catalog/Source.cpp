#include "catalog/Source.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "common/FolderFiles.h"
#include "common/Path.h"

CSource::CSource(const SearchFolder& folder, const CSource* predecessor)
    : m_folder(folder), m_records(std::make_shared<RecordList>()) {
  // Records name the folder as their origin.
  if (predecessor && predecessor->m_folder.folder == folder.folder) {
    m_files = predecessor->m_files;
    m_records = predecessor->m_records;
    m_bAnyIncomplete = predecessor->m_bAnyIncomplete;
  }
}

bool CSource::Recheck() {
  ListFolder();
  if (m_bAnyIncomplete) {
    RetryIncomplete();
  }
  return m_bChanged;
}

/// Compares the folder with the list, which nearly always is in the same order: nothing is
/// allocated before a file is missing or new.
void CSource::ListFolder() {
  size_t position = 0;
  bool isInOrder = true;
  Files others;
  const FolderListing listing =
      ForEachFile(m_folder.folder, L".msm", [&](const WIN32_FIND_DATAW& found) {
        const FileStamp stamp = FileStamp::Of(found);
        isInOrder =
            isInOrder && position < m_files.size() && m_files[position].name == found.cFileName;
        if (!isInOrder) {
          others.push_back({found.cFileName, stamp, {}, nullptr});
          return;
        }
        File& file = m_files[position++];
        if (file.stamp != stamp) {
          file.stamp = stamp;
          m_bChanged = true;
        }
      });
  // Files of a folder that is unavailable are not taken for deleted.
  if (listing != FolderListing::Unavailable && (!others.empty() || position != m_files.size())) {
    ReplaceFiles(std::move(others), position);
  }
}

/// Has `others` follow the first `unchanged` files of the list, with the records that they have in
/// the rest of it.
void CSource::ReplaceFiles(Files others, size_t unchanged) {
  const auto rest = m_files.begin() + static_cast<std::ptrdiff_t>(unchanged);
  std::map<std::wstring_view, const File*> known;
  for (auto file = rest; file != m_files.end(); ++file) {
    known.emplace(file->name, &*file);
  }
  bool changed = others.size() != known.size();
  for (File& file : others) {
    const auto found = known.find(file.name);
    if (found == known.end()) {
      changed = true;
      continue;
    }
    changed = changed || found->second->stamp != file.stamp;
    file.readStamp = found->second->readStamp;
    file.record = found->second->record;
  }
  m_files.reserve(unchanged + others.size());
  // Nothing can fail from here.
  m_files.erase(m_files.begin() + static_cast<std::ptrdiff_t>(unchanged), m_files.end());
  std::move(others.begin(), others.end(), std::back_inserter(m_files));
  m_bChanged = m_bChanged || changed;
}

/// A file that was locked or half written when it was read does not show in the list when it
/// becomes readable: it is tried again.
void CSource::RetryIncomplete() {
  for (File& file : m_files) {
    if (file.record && file.record->IsIncomplete()) {
      const auto record = Read(file);
      if (!record || !record->IsIncomplete() || record->Key() != file.record->Key()) {
        file.record = nullptr;
        m_bChanged = true;
      }
    }
  }
}

bool CSource::NeedsReading(const File& file) noexcept {
  if (!file.record) {
    return true;
  }
  const bool rewritten = file.record->NeedsRecheck() && file.stamp != file.readStamp;
  file.record->SetRecheck(rewritten);
  return rewritten;
}

/// A record of the file; null if the folder no longer lists it. The listing itself is asked: a file
/// that is there and cannot be opened must not look gone now and be found again at the next
/// refresh.
std::shared_ptr<CCacheMSM> CSource::Read(const File& file) const {
  const CWideString path = JoinPath(m_folder.folder, file.name);
  auto record = std::make_shared<CCacheMSM>();
  record->InitFromFoundModule(path, m_folder.folder);
  return record->IsIncomplete() && !IsListed(path) ? nullptr : record;
}

/// Makes the list of the records that there are.
void CSource::SetRecords() {
  RecordList records;
  records.reserve(m_files.size());
  bool anyIncomplete = false;
  for (const File& file : m_files) {
    if (file.record) {
      records.push_back(file.record);
      anyIncomplete = anyIncomplete || file.record->IsIncomplete();
    }
  }
  std::sort(records.begin(), records.end(), [](const auto& a, const auto& b) {
    return a->Key() == b->Key() ? a->Path() < b->Path() : a->Key() < b->Key();
  });
  m_records = std::make_shared<const RecordList>(std::move(records));
  m_bAnyIncomplete = anyIncomplete;
  m_bChanged = false;
}
