#pragma once

#include "catalog/Source.h"
#include "module/Collections.h"

namespace qm::catalog {

/// A collection of merge modules for clients, and their records. Lookups of the catalog use the
/// records, because a client may open a module object on another file.
class CatalogModules {
 public:
  /// Creates an empty list with memory for `count` modules. Throws std::bad_alloc.
  explicit CatalogModules(size_t count);

  /// Adds a new module object for a record, under the record's key. Throws std::bad_alloc; the list
  /// must then be discarded.
  void Add(const std::shared_ptr<module::CCacheMSM>& record);

  /// Returns whether a module has this key, ignoring case. Raises failures of the collection.
  bool HasKey(const common::WideString& key) const;

  const RecordList& Records() const noexcept { return m_records; }

  /// Returns the collection with a new reference, which the caller owns.
  IMergeModules* NewReference() const noexcept;

 private:
  common::ComPtr<com::ComObject<module::CMergeModules>> m_collection;
  RecordList m_records;
};

}  // namespace qm::catalog
