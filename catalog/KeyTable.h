#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "module/CacheMSM.h"

/// The keys "ID:version" in lower case of the records that the process has read; an empty version
/// counts as "0".
///
/// It keeps the records in the order of their keys, and no texts: a key is told from its record
/// when it is compared. The order is made at the first search after Clear, since most lists are
/// never searched.
class CKeyTable {
 public:
  /// Whether one of `records` that is still held has the key `key`, which is in lower case. Takes
  /// up `records` at the first call after Clear. Throws std::bad_alloc.
  bool Contains(std::wstring_view key, const std::vector<std::weak_ptr<CCacheMSM>>& records);

  /// Lets the records go. To be called when there are others.
  void Clear() noexcept;

 private:
  void Fill(const std::vector<std::weak_ptr<CCacheMSM>>& records);

  bool m_isFilled = false;
  std::vector<std::shared_ptr<const CCacheMSM>> m_records;
};
