#include "module/TableCache.h"

#include "common/DllLifetime.h"
#include "common/ExclusiveLock.h"

namespace qm::module {

namespace {

struct LastTables {
  common::WideString path;
  std::shared_ptr<const msidb::ModuleDatabase> database;  ///< null if nothing is kept
};

common::DllWide<LastTables> theLastTables;
SRWLOCK theLock = SRWLOCK_INIT;

}  // namespace

SRWLOCK& TableLock() noexcept { return theLock; }

std::shared_ptr<const msidb::ModuleDatabase> OpenForReadingTables(const common::WideString& path) {
  LastTables& last = theLastTables.Get([] { return new LastTables; });
  if (last.database && last.path == path && last.database->IsCurrent()) {
    return last.database;
  }
  last.database.reset();
  last.path = path;
  const std::shared_ptr<msidb::ModuleDatabase> database = msidb::ModuleDatabase::Open(path);
  if (database->LoadAndClose({L"Dialog", L"CustomAction", L"ModuleDependency", L"ModuleExclusion",
                              L"Component", L"File"})) {
    last.database = database;
  }
  return database;
}

void DropCachedTables() noexcept {
  const common::ExclusiveLock lock(theLock);
  if (LastTables* const last = theLastTables.Find()) {
    *last = {};
  }
}

}  // namespace qm::module
