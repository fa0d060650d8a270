#include "catalog/GalleryPass.h"

#include "catalog/FolderFiles.h"
#include "common/ModuleKey.h"

namespace {

constexpr std::wstring_view kExtension = L".ini";

/// The key of the module that a description names; empty when it names none.
CWideString KeyOfDescription(const CWideString& name) {
  CMMGallery description;
  description.SetNameAndVersion(name.c_str(), L"");
  const CWideString id = description.GetModuleID();
  return id.empty() ? id : MakeModuleKey(id, description.GetLanguage());
}

std::shared_ptr<CCacheMSM> MakeGalleryRecord(CCatalogState& state, const CWideString& name) {
  auto record = std::make_shared<CCacheMSM>();
  record->InitFromGallery(name);
  state.records.push_back(record);
  return record;
}

}  // namespace

void AddModulesOfGallery(CCatalogState& state, const CWideString& galleryRoot,
                         CModuleList& modules) {
  decltype(state.galleryRecords) records;
  const auto addModule = [&](const WIN32_FIND_DATAW& found) {
    const std::wstring_view fileName(found.cFileName);
    const CWideString name(fileName.substr(0, fileName.size() - kExtension.size()));
    const CWideString key = KeyOfDescription(name);
    if (key.empty() || modules.HasKey(key)) {
      return;
    }
    const auto record = MakeGalleryRecord(state, name);
    records.insert_or_assign(name, record);
    modules.Add(record);
  };
  if (!galleryRoot.empty()) {
    ForEachFile(JoinPath(galleryRoot, L"ObjectGallery"), kExtension, addModule);
  }
  state.galleryRecords.swap(records);
}
