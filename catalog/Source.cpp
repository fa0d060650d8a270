#include "catalog/Source.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "com/error/Raise.h"
#include "common/FolderFiles.h"
#include "common/Path.h"

namespace qm::catalog {

Source::Source(const SearchFolder& folder, const Source* predecessor)
    : m_folder(folder), m_records(std::make_shared<RecordList>()) {
  // Records name the folder as their origin, so its spelling must be the same.
  if (predecessor && predecessor->m_folder.path == folder.path) {
    m_files = predecessor->m_files;
    m_records = predecessor->m_records;
    m_bAnyIncomplete = predecessor->m_bAnyIncomplete;
  }
}

bool Source::FindChanges() {
  CompareWithFolder();
  if (m_bAnyIncomplete) {
    RetryIncomplete();
  }
  return m_bChanged;
}

/// Compares the folder with the list of files. They are nearly always in the same order, so nothing
/// is allocated until a file is missing or new.
void Source::CompareWithFolder() {
  size_t position = 0;
  bool isInOrder = true;
  Files others;
  const common::ListingOutcome listing =
      common::ForEachFile(m_folder.path, L".msm", [&](const WIN32_FIND_DATAW& found) {
        const common::FileStamp stamp = common::FileStamp::From(found);
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
  // The files of an unavailable folder are not treated as deleted.
  if (listing != common::ListingOutcome::Unavailable &&
      (!others.empty() || position != m_files.size())) {
    ReplaceFiles(std::move(others), position);
  }
}

/// Replaces all but the first `unchanged` files of the list with `others`. A file that was already
/// in the list keeps its record.
void Source::ReplaceFiles(Files others, size_t unchanged) {
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
  // Nothing can fail from here on.
  m_files.erase(m_files.begin() + static_cast<std::ptrdiff_t>(unchanged), m_files.end());
  std::move(others.begin(), others.end(), std::back_inserter(m_files));
  m_bChanged = m_bChanged || changed;
}

/// Reads the files with incomplete records again: a file that was locked or half written may become
/// readable without a change in the listing.
void Source::RetryIncomplete() {
  for (File& file : m_files) {
    if (file.record && file.record->IsIncomplete()) {
      const auto record = ReadRecord(file, nullptr);
      if (!record || !record->IsIncomplete() || record->Key() != file.record->Key()) {
        file.record = nullptr;
        m_bChanged = true;
      }
    }
  }
}

bool Source::NeedsReading(const File& file) noexcept {
  if (!file.record) {
    return true;
  }
  const bool rewritten = file.record->IsRecheckPending() && file.stamp != file.readStamp;
  file.record->SetRecheck(rewritten);
  return rewritten;
}

size_t Source::CountUnread() const noexcept {
  return static_cast<size_t>(std::count_if(m_files.begin(), m_files.end(), NeedsReading));
}

/// Reads a file into a new record; null if it cannot be read and the folder no longer lists it. The
/// listing decides because a file that exists but cannot be opened must not disappear from the
/// catalog and come back at the next refresh.
std::shared_ptr<module::CCacheMSM> Source::ReadRecord(const File& file,
                                                      IOpenFileReader* reader) const {
  const common::WideString path = common::JoinPath(m_folder.path, file.name);
  auto record = std::make_shared<module::CCacheMSM>();
  HRESULT hr = S_OK;
  record->TryInitFromModule(path, m_folder.path, [&](HANDLE open) {
    hr = reader ? reader->ReadFile(path.c_str(), open) : S_OK;
  });
  com::RaiseIfFailed(hr);  // only here, because a failure of the reader is not one of the file
  return record->IsIncomplete() && !common::IsListedByParent(path) ? nullptr : record;
}

/// Rebuilds the list of records.
void Source::SetRecords() {
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

}  // namespace qm::catalog
