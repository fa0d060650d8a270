#include "catalog/GalleryModules.h"

#include "common/FolderFiles.h"
#include "common/Path.h"

namespace {

constexpr std::wstring_view kExtension = L".ini";

}  // namespace

void AddModulesOfGallery(CCatalogState& state, const CWideString& galleryRoot,
                         CModuleList& modules) {
  decltype(state.galleryRecords) records;
  const auto addModule = [&](const WIN32_FIND_DATAW& found) {
    const std::wstring_view fileName(found.cFileName);
    const CWideString name(fileName.substr(0, fileName.size() - kExtension.size()));
    // The record is read before it is known whether it will be listed: opening the description a
    // second time could read another version, or fail and read as empty.
    const auto record = std::make_shared<CCacheMSM>();
    record->InitFromGallery(name);
    if (record->ModuleID().empty() || modules.HasKey(record->Key())) {
      return;
    }
    state.records.push_back(record);
    records.insert_or_assign(name, record);
    modules.Add(record);
  };
  if (!galleryRoot.empty()) {
    ForEachFile(JoinPath(galleryRoot, L"ObjectGallery"), kExtension, addModule);
  }
  state.galleryRecords.swap(records);
}
