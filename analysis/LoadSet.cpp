#include "analysis/LoadSet.h"

#include <algorithm>
#include <optional>

#include "analysis/CaptureFailure.h"
#include "analysis/GalleryFiles.h"
#include "analysis/IndexFiles.h"
#include "analysis/ModuleContents.h"
#include "analysis/OpenFileReader.h"
#include "com/error/Raise.h"
#include "com/error/win32_exception.h"
#include "common/Bstr.h"
#include "common/Path.h"
#include "common/SystemMessage.h"
#include "idl/qmmmupdater.h"
#include "msidb/ModuleFile.h"
#include "text/Utf.h"

namespace qm::analysis {

namespace {

/// The most modules for which memory is reserved, because the count of a collection may be wrong.
constexpr long kMaxReserved = 10000;

template <class Interface>
std::string ReadText(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(BSTR*)) {
  common::UniqueBstr value;
  com::RaiseIfFailed((object.*property)(value.Put()));
  return text::ToUtf8(common::ViewOf(value.Get()));
}

template <class Interface>
bool ReadFlag(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(VARIANT_BOOL*)) {
  VARIANT_BOOL value = VARIANT_FALSE;
  com::RaiseIfFailed((object.*property)(&value));
  return value != VARIANT_FALSE;
}

/// Reads the properties of a module of the collection. An object of another implementation may lack
/// the newer interfaces; the module then needs no download and has no search folder.
void ReadIdentity(const common::ComPtr<IMergeModule>& object, merge::Module& module) {
  module.path = ReadText(*object, &IMergeModule::get_Path);
  module.key = ReadText(*object, &IMergeModule::get_Key);
  module.moduleId = ReadText(*object, &IMergeModule::get_ModuleID);
  com::RaiseIfFailed(object->get_Language(&module.language));
  module.version = ReadText(*object, &IMergeModule::get_Version);
  module.displayName = ReadText(*object, &IMergeModule::get_DisplayName);
  module.packageCode = ReadText(*object, &IMergeModule::get_PackageCode);

  common::ComPtr<IMergeModule2> withState;
  if (SUCCEEDED(object.QueryInterface(withState.Put())) && withState) {
    module.needsDownload = ReadFlag(*withState, &IMergeModule2::get_NeedsDownload);
  }
  common::ComPtr<IMergeModuleTavik> withOrigin;
  if (SUCCEEDED(object.QueryInterface(withOrigin.Put())) && withOrigin) {
    module.isFromGallery = !ReadFlag(*withOrigin, &IMergeModuleTavik::get_HasOrigin);
    module.origin = ReadText(*withOrigin, &IMergeModuleTavik::get_Origin);
  }
}

std::string Describe(const msidb::FileError& error, const std::string& path) {
  const common::UniqueLocalText message = common::FormatSystemMessage(error.code);
  return DescribeFailure({HResultFromCode(error.code),
                          error.cause.empty() ? common::WideString(message.Get()) : error.cause},
                         path);
}

/// Describes how a file differs from what the collection says about it; empty if it does not.
std::string CompareIdentities(const merge::Module& listed, const merge::Module& read) {
  const std::string listedLanguage = std::to_string(listed.language);
  const std::string readLanguage = std::to_string(read.language);
  const struct {
    const char* what;
    std::string_view listed;
    std::string_view read;
  } facts[] = {
      {"module ID", listed.moduleId, read.moduleId},
      {"language", listedLanguage, readLanguage},
      {"version", listed.version, read.version},
      {"package code", listed.packageCode, read.packageCode},
  };
  std::string change;
  for (const auto& [what, before, now] : facts) {
    if (before != now) {
      change += change.empty() ? "The file was written after it was listed: its " : ", its ";
      change.append(what)
          .append(" was \"")
          .append(before)
          .append("\" and is \"")
          .append(now)
          .append("\"");
    }
  }
  return change.empty() ? change : change + '.';
}

/// Returns what the file of a module contains. Throws msidb::FileError.
ModuleContents ReadContents(const merge::Module& module, OpenFileReader& openFiles) {
  if (auto contents = openFiles.Take(module.path)) {
    return *std::move(contents);
  }
  msidb::ModuleFile file(text::ToWide(module.path));
  return ReadModuleContents(file, module.path, openFiles.Shared());
}

/// Fills in what the file of a module contains. Returns the code of a failure, else S_OK.
HRESULT ReadFile(merge::Module& module, OpenFileReader& openFiles) {
  try {
    auto [read, code] = ReadContents(module, openFiles);
    if (read.failure.empty()) {
      read.change = CompareIdentities(module, read);
    }
    static_cast<merge::ModuleListing&>(read) = std::move(module);
    module = std::move(read);
    return code;
  } catch (const msidb::FileError& error) {
    module.failure = Describe(error, module.path);
    return HResultFromCode(error.code);
  }
}

/// Reads a module. Returns the code of its failure, else S_OK.
HRESULT ReadModule(const common::ComPtr<IMergeModule>& object, OpenFileReader& openFiles,
                   merge::Module& module, std::vector<std::unique_ptr<const std::string>>& texts) {
  if (const auto failure = CaptureFailure([&] { ReadIdentity(object, module); })) {
    module.failure = DescribeFailure(*failure, module.path);
    return failure->hr;
  }
  if (module.isFromGallery && !module.path.empty() &&
      !common::PathExists(text::ToWide(module.path))) {
    module.path.clear();
  }
  // Unlike this flag, the interfaces call a module present only if all its download files are.
  module.isPresent = !module.isFromGallery || !module.path.empty();
  if (!module.path.empty()) {
    return ReadFile(module, openFiles);
  }
  return module.isFromGallery ? ReadDescription(module, texts) : S_OK;
}

/// Lists the failure of a module, if it has one. `hr` is its code.
void AddFailure(size_t position, HRESULT hr, SetData::Contents& contents) {
  const merge::Module& module = contents.modules[position];
  if (!module.failure.empty()) {
    contents.failures.push_back({merge::GetFileInSentence(module), module.failure, hr, position});
  }
}

void AddModule(const common::ComPtr<IMergeModule>& object, OpenFileReader& openFiles,
               SetData::Contents& contents) {
  contents.objects.push_back(object);
  contents.modules.emplace_back();
  merge::Module& module = contents.modules.back();
  const HRESULT hr = ReadModule(object, openFiles, module, contents.texts);
  AddFailure(contents.modules.size() - 1, hr, contents);
}

/// Reads modules again if their data must be compared with that of modules read after them.
void ReadSharedData(OpenFileReader& openFiles, SetData::Contents& contents) {
  const std::vector<std::string> paths = openFiles.Shared().TakeUnread();
  if (paths.empty()) {
    return;
  }
  for (size_t position = 0; position < contents.modules.size(); ++position) {
    merge::Module& module = contents.modules[position];
    if (module.failure.empty() && std::binary_search(paths.begin(), paths.end(), module.path)) {
      const HRESULT hr = ReadFile(module, openFiles);
      AddFailure(position, hr, contents);
    }
  }
  std::sort(contents.failures.begin(), contents.failures.end(),
            [](const LoadFailure& a, const LoadFailure& b) { return a.module < b.module; });
}

/// Raises E_UNEXPECTED for an element that the collection counts but does not have.
[[noreturn]] void RaiseBrokenCollection(long number) {
  ::SetErrorInfo(0, nullptr);
  com::Raise(com_exception(E_UNEXPECTED, common::WideString::Format(
                                             L"The collection has no module number %ld.", number)));
}

/// Returns `source` itself if it is a collection, or the collection of `source` if it is a catalog.
/// A catalog may hand its files to `openFiles`.
common::ComPtr<IMergeModules> GetCollection(IDispatch& source, OpenFileReader& openFiles) {
  const common::ComPtr<IDispatch> object(&source);
  common::ComPtr<IMergeModules> collection;
  common::ComPtr<IOpenFiles> files;
  common::ComPtr<IMMCatalog> catalog;
  if (SUCCEEDED(object.QueryInterface(collection.Put())) && collection) {
    return collection;
  }
  if (SUCCEEDED(object.QueryInterface(files.Put())) && files) {
    const HRESULT hr = files->ListModules(&openFiles, collection.Put());
    openFiles.RaiseFailure();  // which the catalog returns without its description
    com::RaiseIfFailed(hr);
  } else if (SUCCEEDED(object.QueryInterface(catalog.Put())) && catalog) {
    com::RaiseIfFailed(catalog->get_MergeModules(collection.Put()));
  }
  if (!collection) {
    ::SetErrorInfo(0, nullptr);
    com::Raise(com_exception(
        E_NOINTERFACE, L"The object is neither a collection nor a catalog of merge modules."));
  }
  return collection;
}

}  // namespace

SharedSet LoadSet(IDispatch& source, const std::shared_ptr<LoadProgress>& progress) {
  const auto openFiles = com::ComObject<OpenFileReader>::Create();
  openFiles->Init(progress);
  const common::ComPtr<IMergeModules> collection = GetCollection(source, *openFiles);
  SetData::Contents contents;
  long count = 0;
  com::RaiseIfFailed(collection->get_Count(&count));
  if (count < 0) {
    com::Raise(com_exception(E_UNEXPECTED, L"The collection has a negative number of modules."));
  }
  contents.modules.reserve(static_cast<size_t>(std::min(count, kMaxReserved)));
  VARIANT index;
  index.vt = VT_I4;
  for (index.lVal = 1; index.lVal <= count; ++index.lVal) {
    progress->Report(index.lVal, count);
    common::ComPtr<IMergeModule> object;
    const HRESULT hr = collection->get_Item(index, object.Put());
    if (hr == E_INVALIDARG || (SUCCEEDED(hr) && !object)) {
      RaiseBrokenCollection(index.lVal);
    }
    com::RaiseIfFailed(hr);
    AddModule(object, *openFiles, contents);
  }
  ReadSharedData(*openFiles, contents);
  contents.indexes = ReadIndexFiles(contents.failures);
  contents.descriptions = ReadGalleryDescriptions();
  return std::make_shared<const SetData>(std::move(contents));
}

}  // namespace qm::analysis
