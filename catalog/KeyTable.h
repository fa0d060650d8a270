#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "module/CacheMSM.h"

namespace qm::catalog {

/// The lower-case keys "ID:version" of the records that the process has read. An empty version is
/// treated as "0".
///
/// Holds the records sorted by key and composes keys only for comparison. The table is built at the
/// first search after Clear, since most lists are never searched. Use it only while owning the
/// ApartmentGate.
class KeyTable {
 public:
  /// Returns whether a record that has not expired has the lower-case key `key`. The first call
  /// after Clear takes the records from `records`; later calls ignore that argument. Throws
  /// std::bad_alloc.
  bool Contains(std::wstring_view key,
                const std::vector<std::weak_ptr<module::CCacheMSM>>& records);

  /// Releases the records. Call when the list of records has changed.
  void Clear() noexcept;

 private:
  void Fill(const std::vector<std::weak_ptr<module::CCacheMSM>>& records);

  bool m_isFilled = false;
  std::vector<std::shared_ptr<const module::CCacheMSM>> m_records;
};

}  // namespace qm::catalog
