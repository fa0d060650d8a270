#include "catalog/CatalogState.h"

#include <algorithm>

#include "common/DllLifetime.h"

CCatalogState& CCatalogState::Instance() {
  static CModuleWide<CCatalogState> state;
  return state.Get([] { return new CCatalogState; });
}

void CCatalogState::ForgetGoneRecords() noexcept {
  keys.Clear();
  records.erase(std::remove_if(records.begin(), records.end(),
                               [](const auto& record) { return record.expired(); }),
                records.end());
}

void CCatalogState::NoteChange() noexcept {
  ++changes;
  for (const auto& record : records) {
    if (const auto known = record.lock()) {
      known->SetRecheck(true);
    }
  }
}
