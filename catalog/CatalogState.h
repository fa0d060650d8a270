#pragma once

#include <map>
#include <memory>
#include <vector>

#include "catalog/KeyTable.h"
#include "catalog/Source.h"

namespace qm::catalog {

/// The state that all catalogs of the process share, from its first use until the DLL is unloaded.
/// Use it only while owning the ApartmentGate. The records in it may be used by any apartment, see
/// CCacheMSM.
///
/// The index tables are process-wide too, but belong to the gallery: IndexTables.
struct CatalogState {
  static CatalogState& Instance();

  /// The search folders by folder path; no source is null. A refresh replaces the map as a whole;
  /// the shared pointers keep a source alive that is still in use.
  using SourceMap = std::map<common::WideString, std::shared_ptr<Source>, FolderLess>;
  SourceMap sources;

  /// The records that the last refresh read from the gallery, by the names of their descriptions.
  std::map<common::WideString, std::shared_ptr<module::CCacheMSM>> galleryRecords;

  /// All records that were made, except those that had expired at the last PruneExpiredRecords.
  std::vector<std::weak_ptr<module::CCacheMSM>> records;

  /// The keys "ID:version" of `records`.
  KeyTable keys;

  /// The number of changes found in the sources and their folders. The list of a catalog is out of
  /// date if it was built at another count.
  unsigned long changeCount = 0;

  /// Whether a refresh is running. A call to a component in another process may dispatch messages;
  /// a refresh that such a message starts in the same apartment must leave this state alone.
  bool isRefreshing = false;

  /// Removes expired records and clears the key table. Call after making records.
  void PruneExpiredRecords() noexcept;

  /// Counts a change, and marks all records to be checked against their files before they are
  /// listed again.
  void MarkChanged() noexcept;

 private:
  CatalogState() = default;
};

}  // namespace qm::catalog
