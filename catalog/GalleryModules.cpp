#include "catalog/GalleryModules.h"

#include "common/FolderFiles.h"
#include "common/Path.h"

namespace qm::catalog {

namespace {

constexpr std::wstring_view kExtension = L".ini";

}  // namespace

void AddGalleryModules(CatalogState& state, const common::WideString& galleryRoot,
                       CatalogModules& modules) {
  decltype(state.galleryRecords) records;
  const auto addModule = [&](const WIN32_FIND_DATAW& found) {
    const std::wstring_view fileName(found.cFileName);
    const common::WideString name(fileName.substr(0, fileName.size() - kExtension.size()));
    // The record is read before it is known whether it will be listed: opening the description a
    // second time could read another version, or fail and read as empty.
    const auto record = std::make_shared<module::CCacheMSM>();
    record->InitFromGallery(name);
    if (record->ModuleID().empty() || modules.HasKey(record->Key())) {
      return;
    }
    state.records.push_back(record);
    records.insert_or_assign(name, record);
    modules.Add(record);
  };
  if (!galleryRoot.empty()) {
    common::ForEachFile(common::JoinPath(galleryRoot, L"ObjectGallery"), kExtension, addModule);
  }
  state.galleryRecords.swap(records);
}

}  // namespace qm::catalog
