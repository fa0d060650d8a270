#pragma once

#include "catalog/Source.h"
#include "module/Collections.h"

/// Merge modules as a client gets them, with their records. A module object that a client opens on
/// another file changes that object alone: questions about the list are answered from the records.
class CModuleList {
 public:
  /// An empty list with room for `count` modules. Throws std::bad_alloc.
  explicit CModuleList(size_t count);

  /// Adds a new module object of a record, under the record's key. Throws std::bad_alloc; the list
  /// is of no use then.
  void Add(const std::shared_ptr<CCacheMSM>& record);

  /// Whether a module has this key, without regard to case. Raises failures of the collection.
  bool HasKey(const CWideString& key) const;

  const RecordList& Records() const noexcept { return m_records; }

  /// The collection for a caller, with a new reference.
  IMergeModules* NewReference() const noexcept;

 private:
  CComPtr<CComObject<CMergeModules>> m_collection;
  RecordList m_records;
};
