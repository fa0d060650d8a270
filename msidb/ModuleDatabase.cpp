#include "msidb/ModuleDatabase.h"

#include "msidb/ImageDatabase.h"
#include "msidb/InstallerDatabase.h"
#include "msidb/InstallerResult.h"

namespace qm::msidb {

void RowCursor::RequireFields(UINT count, const wchar_t* table) const {
  if (FieldCount() < count) {
    RaiseFileFailure(ERROR_INVALID_TABLE, {}, L"MsiRecordGetFieldCount", table);
  }
}

std::unique_ptr<ModuleDatabase> ModuleDatabase::Open(const common::WideString& path) {
  auto image = std::make_unique<ImageDatabase>(path);
  if (image->IsSupported()) {
    return image;
  }
  image->Verify();
  image.reset();  // the installer may want the file to itself
  return std::make_unique<InstallerDatabase>(path);
}

}  // namespace qm::msidb
