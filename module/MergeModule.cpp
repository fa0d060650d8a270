#include "module/MergeModule.h"

#include <shlwapi.h>

#include <optional>

#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "common/Bstr.h"
#include "common/Path.h"
#include "gallery/MMGalleryDownloadFileCaskel.h"
#include "module/Collections.h"
#include "module/MMCustomAction.h"
#include "module/MMDependency.h"
#include "module/MMDialog.h"
#include "module/MMExclusion.h"
#include "module/MMFile.h"

namespace qm::module {

namespace {

const common::WideString& EntryOf(const common::WideString& name) noexcept { return name; }

template <class Row>
const Row& EntryOf(const std::pair<const common::WideString, Row>& entry) noexcept {
  return entry.second;
}

/// Adds a download file of the gallery description, with its position from 1 as its key. A gap in
/// the description's numbering becomes an item with empty texts.
void AddDownloadFile(gallery::CMMGallery& gallery, long index,
                     CMMGalleryDownloadFilesCaskel& files) {
  common::UniqueBstr location;
  common::UniqueBstr mediaLocation;
  common::UniqueBstr internetLocation;
  common::UniqueBstr checkSum;
  long fileSize = 0;
  gallery.GetDownloadFile(index, location.Put(), mediaLocation.Put(), internetLocation.Put(),
                          &fileSize, checkSum.Put());
  const auto file = com::ComObject<gallery::CMMGalleryDownloadFileCaskel>::Create();
  file->Init(location.Get(), mediaLocation.Get(), internetLocation.Get(), fileSize, checkSum.Get());
  files.Add(common::WideString::Format(L"%d", static_cast<int>(index + 1)), file.Get());
}

/// Returns whether a path is independent of the current folder. "\dir" and "C:dir" are not.
bool IsFullPath(std::wstring_view path) noexcept {
  const auto isSeparator = [](wchar_t character) {
    return character == L'\\' || character == L'/';
  };
  return path.size() > 2 && isSeparator(path[path[1] == L':' ? 2 : 1]) &&
         (path[1] == L':' || isSeparator(path[0]));
}

/// Returns the full path of a module to open. Enters the ApartmentGate to resolve a relative path,
/// because loading a sibling changes the current folder of the process for a while.
common::WideString ResolveModulePath(BSTR path) {
  std::optional<com::ScopedGateEntry> pass;
  if (!IsFullPath(common::ViewOf(path))) {
    pass.emplace();
  }
  return common::ResolveFullPath(path);
}

VARIANT_BOOL ToVariantBool(bool value) noexcept { return value ? VARIANT_TRUE : VARIANT_FALSE; }

}  // namespace

std::shared_ptr<CCacheMSM> CMergeModule::RequireRecord() const {
  if (!m_pCache) {
    com::Raise(com_exception(E_UNEXPECTED, L"No merge module is open."));
  }
  return m_pCache;
}

template <class Text>
HRESULT CMergeModule::GetText(Text (CCacheMSM::*text)() const noexcept,
                              BSTR* value) const noexcept {
  return FillOut(value, [&] {
    const auto record = RequireRecord();
    *value = com::AllocateBstr((*record.*text)()).Release();
    return S_OK;
  });
}

template <class Item, class Collection, class List, class Interface>
HRESULT CMergeModule::GetCollection(List (CCacheMSM::*list)(), Interface** value) const noexcept {
  return FillOut(value, [&] {
    const auto record = RequireRecord();
    const auto collection = com::ComObject<Collection>::Create();
    for (const auto& entry : (*record.*list)()) {
      const auto item = com::ComObject<Item>::Create();
      item->Init(EntryOf(entry));
      collection->Add(item->CollectionKey(), item.Get());
    }
    com::RaiseIfFailed(collection.QueryInterface(value));
    return S_OK;
  });
}

STDMETHODIMP CMergeModule::get_Dialogs(IMMDialogs** value) {
  return GetCollection<CMMDialog, CMMDialogs>(&CCacheMSM::GetDialogs, value);
}

STDMETHODIMP CMergeModule::get_CustomActions(IMMCustomActions** value) {
  return GetCollection<CMMCustomAction, CMMCustomActions>(&CCacheMSM::GetCustomActions, value);
}

STDMETHODIMP CMergeModule::get_PackageCode(BSTR* value) {
  return GetText(&CCacheMSM::PackageCode, value);
}

STDMETHODIMP CMergeModule::get_ModuleID(BSTR* value) {
  return GetText(&CCacheMSM::ModuleID, value);
}

STDMETHODIMP CMergeModule::get_Key(BSTR* value) { return GetText(&CCacheMSM::Key, value); }

STDMETHODIMP CMergeModule::get_Path(BSTR* value) { return GetText(&CCacheMSM::Path, value); }

STDMETHODIMP CMergeModule::get_Comments(BSTR* value) {
  return GetText(&CCacheMSM::Comments, value);
}

STDMETHODIMP CMergeModule::get_Subject(BSTR* value) { return GetText(&CCacheMSM::Subject, value); }

STDMETHODIMP CMergeModule::get_Author(BSTR* value) { return GetText(&CCacheMSM::Author, value); }

STDMETHODIMP CMergeModule::get_Language(long* value) {
  *value = 0;
  return MethodBoundary([&] {
    *value = RequireRecord()->Language();
    return S_OK;
  });
}

STDMETHODIMP CMergeModule::get_Version(BSTR* value) { return GetText(&CCacheMSM::Version, value); }

STDMETHODIMP CMergeModule::get_Dependencies(IMMDependencies** value) {
  return GetCollection<CMMDependency, CMMDependencies>(&CCacheMSM::GetDependencies, value);
}

STDMETHODIMP CMergeModule::get_Exclusions(IMMExclusions** value) {
  return GetCollection<CMMExclusion, CMMExclusions>(&CCacheMSM::GetExclusions, value);
}

STDMETHODIMP CMergeModule::get_Files(IMMFiles** value) {
  return GetCollection<CMMFile, CMMFiles>(&CCacheMSM::GetFiles, value);
}

STDMETHODIMP CMergeModule::get_DisplayName(BSTR* value) {
  return GetText(&CCacheMSM::DisplayName, value);
}

STDMETHODIMP CMergeModule::Open(BSTR path) {
  return MethodBoundary([&] {
    // The new record is set before it is filled: after a failure the object returns what could be
    // read, not the previous module.
    m_pCache = std::make_shared<CCacheMSM>();
    const auto record = m_pCache;
    if (common::ViewOf(path).find(L'\0') != std::wstring_view::npos) {
      // The installer would open the path up to the zero character.
      com::Raise(com_exception(E_INVALIDARG, L"The path holds a zero character."));
    }
    record->InitFromModule(ResolveModulePath(path), common::WideString());
    return S_OK;
  });
}

STDMETHODIMP CMergeModule::get_Present(VARIANT_BOOL* value) {
  return FillOut(value, [&] { return RequireRecord()->GetPresent(value); });
}

STDMETHODIMP CMergeModule::get_NeedsDownload(VARIANT_BOOL* value) {
  return FillOut(value, [&] { return RequireRecord()->GetNeedsDownload(value); });
}

STDMETHODIMP CMergeModule::get_DownloadFiles(IMMGalleryDownloadFilesCaskel** value) {
  return FillOut(value, [&] {
    const auto record = RequireRecord();
    const auto collection = com::ComObject<CMMGalleryDownloadFilesCaskel>::Create();
    const long count = record->GetDownloadFileCount();
    for (long index = 0; index < count; ++index) {
      AddDownloadFile(*record, index, *collection);
    }
    com::RaiseIfFailed(collection.QueryInterface(value));
    return S_OK;
  });
}

STDMETHODIMP CMergeModule::get_LocalPath(BSTR* value) {
  return FillOut(value, [&] { return RequireRecord()->GetLocalPath(value); });
}

STDMETHODIMP CMergeModule::get_HasOrigin(VARIANT_BOOL* value) {
  return Answer(value, [&] { return ToVariantBool(!RequireRecord()->GetOrigin().empty()); });
}

STDMETHODIMP CMergeModule::get_Origin(BSTR* value) {
  // Unlike the other text properties, this one ignores a null pointer.
  return value ? GetText(&CCacheMSM::GetOrigin, value) : S_OK;
}

}  // namespace qm::module
