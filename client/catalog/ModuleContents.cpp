#include "client/catalog/ModuleContents.h"

#include "client/catalog/Properties.h"
#include "msidb/TargetDirectories.h"
#include "text/Utf.h"
#include "traits/TargetPath.h"

using qm::text::ToUtf8;
using qm::text::ToWide;

namespace {

FileDescription DescribeItem(IMMFile& file) {
  return {Text(file, &IMMFile::get_Key),
          Text(file, &IMMFile::get_Directory),
          {},
          Text(file, &IMMFile::get_FileName),
          Cell(file, &IMMFile::get_FileSize),
          Text(file, &IMMFile::get_Version),
          Text(file, &IMMFile::get_Language),
          Cell(file, &IMMFile::get_Sequence)};
}

DependencyDescription DescribeItem(IMMDependency& dependency) {
  return {Text(dependency, &IMMDependency::get_Key), Text(dependency, &IMMDependency::get_ModuleID),
          Cell(dependency, &IMMDependency::get_Language),
          Text(dependency, &IMMDependency::get_Version)};
}

ExclusionDescription DescribeItem(IMMExclusion& exclusion) {
  return {Text(exclusion, &IMMExclusion::get_Key), Text(exclusion, &IMMExclusion::get_ModuleID),
          Text(exclusion, &IMMExclusion::get_Language),
          Text(exclusion, &IMMExclusion::get_MinVersion),
          Text(exclusion, &IMMExclusion::get_MaxVersion)};
}

std::string DescribeItem(IMMCustomAction& action) {
  return Text(action, &IMMCustomAction::get_Name);
}

std::string DescribeItem(IMMDialog& dialog) { return Text(dialog, &IMMDialog::get_Name); }

DownloadFileDescription DescribeItem(IMMGalleryDownloadFileCaskel& file) {
  return {Text(file, &IMMGalleryDownloadFileCaskel::get_Location),
          Text(file, &IMMGalleryDownloadFileCaskel::get_MediaLocation),
          Text(file, &IMMGalleryDownloadFileCaskel::get_InternetLocation),
          Number(file, &IMMGalleryDownloadFileCaskel::get_FileSize),
          Text(file, &IMMGalleryDownloadFileCaskel::get_CheckSum)};
}

/// Fills `items` from a collection of the module. A failure leaves it empty and is added to
/// `failures` under `part`.
template <class Item, class Module, class Collection, class Value>
void DescribeCollection(Module& module, HRESULT (STDMETHODCALLTYPE Module::*property)(Collection**),
                        const char* part, std::vector<Value>& items,
                        std::vector<PartFailure>& failures) {
  try {
    std::vector<Value> read;
    ForEach<Item>(*Get(module, property), [&](Item& item) { read.push_back(DescribeItem(item)); });
    items = std::move(read);
  } catch (const ServerFailure& failure) {
    failures.push_back({part, failure});
  }
}

/// Fills in where the files are installed. No interface returns that, so this reads the module
/// file.
void ResolveTargetPaths(ModuleDescription& module) {
  msidb::TargetDirectories directories;
  for (const FileDescription& file : module.files) {
    directories.try_emplace(ToWide(file.directory));
  }
  if (directories.empty()) {
    return;
  }
  const HRESULT hr =
      msidb::ResolveModuleDirectories(ToWide(module.path), TargetPathOptions(), directories);
  if (FAILED(hr)) {
    module.failures.push_back({"target paths", ServerFailure::Capture(hr)});
    return;
  }
  for (const auto& [key, directory] : directories) {
    if (FAILED(directory.result)) {
      module.failures.push_back({"target path of " + ToUtf8(key),
                                 {directory.result, OnOneLine(ToUtf8(directory.description))}});
    }
  }
  for (FileDescription& file : module.files) {
    file.targetPath = ToUtf8(directories[ToWide(file.directory)].path);
  }
}

}  // namespace

GalleryDescription DescribeGallery(IMergeModule2& module, std::vector<PartFailure>& failures) {
  GalleryDescription gallery;
  try {
    gallery.present = Flag(module, &IMergeModule2::get_Present);
    gallery.needsDownload = Flag(module, &IMergeModule2::get_NeedsDownload);
    gallery.localPath = Text(module, &IMergeModule2::get_LocalPath);
  } catch (const ServerFailure& failure) {
    failures.push_back({"gallery", failure});
    return gallery;
  }
  DescribeCollection<IMMGalleryDownloadFileCaskel>(
      module, &IMergeModule2::get_DownloadFiles, "download files", gallery.downloadFiles, failures);
  return gallery;
}

ModuleDescription Describe(IMergeModule2& newestModule) {
  IMergeModule& module = newestModule;
  ModuleDescription description;
  description.path = Text(module, &IMergeModule::get_Path);
  description.key = Text(module, &IMergeModule::get_Key);
  description.moduleId = Text(module, &IMergeModule::get_ModuleID);
  description.language = Cell(module, &IMergeModule::get_Language);
  description.version = Text(module, &IMergeModule::get_Version);
  description.displayName = Text(module, &IMergeModule::get_DisplayName);
  description.subject = Text(module, &IMergeModule::get_Subject);
  description.author = Text(module, &IMergeModule::get_Author);
  description.comments = Text(module, &IMergeModule::get_Comments);
  description.packageCode = Text(module, &IMergeModule::get_PackageCode);

  auto& failures = description.failures;
  DescribeCollection<IMMFile>(module, &IMergeModule::get_Files, "files", description.files,
                              failures);
  ResolveTargetPaths(description);
  DescribeCollection<IMMDependency>(module, &IMergeModule::get_Dependencies, "dependencies",
                                    description.dependencies, failures);
  DescribeCollection<IMMExclusion>(module, &IMergeModule::get_Exclusions, "exclusions",
                                   description.exclusions, failures);
  DescribeCollection<IMMCustomAction>(module, &IMergeModule::get_CustomActions, "custom actions",
                                      description.customActions, failures);
  DescribeCollection<IMMDialog>(module, &IMergeModule::get_Dialogs, "dialogs", description.dialogs,
                                failures);
  description.gallery = DescribeGallery(newestModule, failures);
  return description;
}
