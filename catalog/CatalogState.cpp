#include "catalog/CatalogState.h"

#include <algorithm>

#include "common/DllLifetime.h"

namespace qm::catalog {

CatalogState& CatalogState::Instance() {
  static common::DllWide<CatalogState> state;
  return state.Get([] { return new CatalogState; });
}

void CatalogState::PruneExpiredRecords() noexcept {
  keys.Clear();
  records.erase(std::remove_if(records.begin(), records.end(),
                               [](const auto& record) { return record.expired(); }),
                records.end());
}

void CatalogState::MarkChanged() noexcept {
  ++changeCount;
  for (const auto& record : records) {
    if (const auto known = record.lock()) {
      known->SetRecheck(true);
    }
  }
}

}  // namespace qm::catalog
