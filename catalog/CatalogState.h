#pragma once

#include <map>
#include <memory>
#include <vector>

#include "catalog/KeyTable.h"
#include "catalog/Source.h"

/// What all catalogs of the process share, from the first one's creation until the DLL is unloaded.
/// It is used behind the ApartmentGate alone. A record that was handed out is shared by apartments:
/// its texts stay as they are, its tables and its gallery description are guarded by themselves.
///
/// The index tables with the flag that has them read once are process-wide too, but belong to the
/// gallery: CIniIndexes.
struct CCatalogState {
  static CCatalogState& Instance();

  /// The search folders by their folder texts. A refresh replaces the map whole; who still holds a
  /// source keeps it.
  using SourceMap = std::map<CWideString, std::shared_ptr<CSource>, FolderOrder>;
  SourceMap sources;  ///< none is null

  /// The records that the last refresh took from the gallery, by the names of their descriptions.
  std::map<CWideString, std::shared_ptr<CCacheMSM>> galleryRecords;

  /// Every record made so far, but for those that nobody held any more at ForgetGoneRecords.
  std::vector<std::weak_ptr<CCacheMSM>> records;

  /// The keys "ID:version" of `records`.
  CKeyTable keys;

  /// How often the sources or one of their folders were seen to have changed. A catalog whose list
  /// was built at another count is out of date.
  unsigned long changes = 0;

  /// Whether a refresh is under way. One that begins meanwhile in the same apartment, from a
  /// message that a component of another process lets through, must not touch any of this.
  bool isRefreshing = false;

  /// To be called whenever records were made.
  void ForgetGoneRecords() noexcept;

  /// Counts a change, and has all records compared with their files before they are listed again.
  void NoteChange() noexcept;

 private:
  CCatalogState() = default;
};
