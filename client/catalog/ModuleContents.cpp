#include "client/catalog/ModuleContents.h"

#include "client/catalog/Properties.h"
#include "msidb/TargetDirectories.h"
#include "text/Utf.h"
#include "traits/TargetPath.h"

namespace mmcat {

namespace {

FileContents ReadItem(IMMFile& file) {
  return {ReadText(file, &IMMFile::get_Key),
          ReadText(file, &IMMFile::get_Directory),
          {},
          ReadText(file, &IMMFile::get_FileName),
          ReadOptionalNumber(file, &IMMFile::get_FileSize),
          ReadText(file, &IMMFile::get_Version),
          ReadText(file, &IMMFile::get_Language),
          ReadOptionalNumber(file, &IMMFile::get_Sequence)};
}

DependencyContents ReadItem(IMMDependency& dependency) {
  return {ReadText(dependency, &IMMDependency::get_Key),
          ReadText(dependency, &IMMDependency::get_ModuleID),
          ReadOptionalNumber(dependency, &IMMDependency::get_Language),
          ReadText(dependency, &IMMDependency::get_Version)};
}

ExclusionContents ReadItem(IMMExclusion& exclusion) {
  return {ReadText(exclusion, &IMMExclusion::get_Key),
          ReadText(exclusion, &IMMExclusion::get_ModuleID),
          ReadText(exclusion, &IMMExclusion::get_Language),
          ReadText(exclusion, &IMMExclusion::get_MinVersion),
          ReadText(exclusion, &IMMExclusion::get_MaxVersion)};
}

std::string ReadItem(IMMCustomAction& action) {
  return ReadText(action, &IMMCustomAction::get_Name);
}

std::string ReadItem(IMMDialog& dialog) { return ReadText(dialog, &IMMDialog::get_Name); }

DownloadFileContents ReadItem(IMMGalleryDownloadFileCaskel& file) {
  return {ReadText(file, &IMMGalleryDownloadFileCaskel::get_Location),
          ReadText(file, &IMMGalleryDownloadFileCaskel::get_MediaLocation),
          ReadText(file, &IMMGalleryDownloadFileCaskel::get_InternetLocation),
          ReadNumber(file, &IMMGalleryDownloadFileCaskel::get_FileSize),
          ReadText(file, &IMMGalleryDownloadFileCaskel::get_CheckSum)};
}

/// Fills `items` from a collection of the module. A failure leaves it empty and is added to
/// `failures` under `part`.
template <class Item, class Module, class Collection, class Value>
void ReadCollection(Module& module, HRESULT (STDMETHODCALLTYPE Module::*property)(Collection**),
                    const char* part, std::vector<Value>& items,
                    std::vector<PartFailure>& failures) {
  try {
    std::vector<Value> read;
    ForEachItem<Item>(*ReadObject(module, property),
                      [&](Item& item) { read.push_back(ReadItem(item)); });
    items = std::move(read);
  } catch (const ServerFailure& failure) {
    failures.push_back({part, failure});
  }
}

/// Fills in where the files are installed. No interface returns that, so this reads the module
/// file.
void ResolveTargetPaths(ModuleContents& module) {
  qm::msidb::TargetDirectoryMap directories;
  for (const FileContents& file : module.files) {
    directories.try_emplace(qm::text::ToWide(file.directory));
  }
  if (directories.empty()) {
    return;
  }
  const HRESULT hr = qm::msidb::ResolveTargetDirectories(
      qm::text::ToWide(module.path), qm::traits::MakeTargetPathOptions(), directories);
  if (FAILED(hr)) {
    module.failures.push_back({"target paths", ServerFailure::Capture(hr)});
    return;
  }
  for (const auto& [key, directory] : directories) {
    if (FAILED(directory.result)) {
      module.failures.push_back(
          {"target path of " + qm::text::ToUtf8(key),
           {directory.result, ToOneLine(qm::text::ToUtf8(directory.description))}});
    }
  }
  for (FileContents& file : module.files) {
    file.targetPath = qm::text::ToUtf8(directories[qm::text::ToWide(file.directory)].path);
  }
}

}  // namespace

GalleryContents ReadGalleryContents(IMergeModule2& module, std::vector<PartFailure>& failures) {
  GalleryContents gallery;
  try {
    gallery.present = ReadFlag(module, &IMergeModule2::get_Present);
    gallery.needsDownload = ReadFlag(module, &IMergeModule2::get_NeedsDownload);
    gallery.localPath = ReadText(module, &IMergeModule2::get_LocalPath);
  } catch (const ServerFailure& failure) {
    failures.push_back({"gallery", failure});
    return gallery;
  }
  ReadCollection<IMMGalleryDownloadFileCaskel>(module, &IMergeModule2::get_DownloadFiles,
                                               "download files", gallery.downloadFiles, failures);
  return gallery;
}

ModuleContents ReadModuleContents(IMergeModule2& newestModule) {
  IMergeModule& module = newestModule;
  ModuleContents contents;
  contents.path = ReadText(module, &IMergeModule::get_Path);
  contents.key = ReadText(module, &IMergeModule::get_Key);
  contents.moduleId = ReadText(module, &IMergeModule::get_ModuleID);
  contents.language = ReadOptionalNumber(module, &IMergeModule::get_Language);
  contents.version = ReadText(module, &IMergeModule::get_Version);
  contents.displayName = ReadText(module, &IMergeModule::get_DisplayName);
  contents.subject = ReadText(module, &IMergeModule::get_Subject);
  contents.author = ReadText(module, &IMergeModule::get_Author);
  contents.comments = ReadText(module, &IMergeModule::get_Comments);
  contents.packageCode = ReadText(module, &IMergeModule::get_PackageCode);

  auto& failures = contents.failures;
  ReadCollection<IMMFile>(module, &IMergeModule::get_Files, "files", contents.files, failures);
  ResolveTargetPaths(contents);
  ReadCollection<IMMDependency>(module, &IMergeModule::get_Dependencies, "dependencies",
                                contents.dependencies, failures);
  ReadCollection<IMMExclusion>(module, &IMergeModule::get_Exclusions, "exclusions",
                               contents.exclusions, failures);
  ReadCollection<IMMCustomAction>(module, &IMergeModule::get_CustomActions, "custom actions",
                                  contents.customActions, failures);
  ReadCollection<IMMDialog>(module, &IMergeModule::get_Dialogs, "dialogs", contents.dialogs,
                            failures);
  contents.gallery = ReadGalleryContents(newestModule, failures);
  return contents;
}

}  // namespace mmcat
