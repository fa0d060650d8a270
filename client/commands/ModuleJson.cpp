#include "client/commands/ModuleJson.h"

namespace mmcat {

namespace {

Json Number(const std::optional<long>& value) { return value ? Json(*value) : Json(nullptr); }

Json ItemJson(const FileContents& file) {
  return {{"key", file.key},
          {"directory", file.directory},
          {"targetPath", file.targetPath},
          {"fileName", file.fileName},
          {"fileSize", Number(file.size)},
          {"version", file.version},
          {"language", file.language},
          {"sequence", Number(file.sequence)}};
}

Json ItemJson(const DependencyContents& dependency) {
  return {{"key", dependency.key},
          {"moduleId", dependency.moduleId},
          {"language", Number(dependency.language)},
          {"version", dependency.version}};
}

Json ItemJson(const ExclusionContents& exclusion) {
  return {{"key", exclusion.key},
          {"moduleId", exclusion.moduleId},
          {"language", exclusion.language},
          {"minVersion", exclusion.minVersion},
          {"maxVersion", exclusion.maxVersion}};
}

Json ItemJson(const DownloadFileContents& file) {
  return {{"location", file.location},
          {"mediaLocation", file.mediaLocation},
          {"internetLocation", file.internetLocation},
          {"fileSize", file.size},
          {"checkSum", file.checkSum}};
}

template <class Item>
Json ListJson(const std::vector<Item>& items) {
  Json list = Json::array();
  for (const Item& item : items) {
    list.push_back(ItemJson(item));
  }
  return list;
}

}  // namespace

Json MakeDownloadFilesJson(const std::vector<DownloadFileContents>& files) {
  return ListJson(files);
}

Json MakeModuleJson(const ModuleContents& module) {
  return {{"path", module.path},
          {"key", module.key},
          {"moduleId", module.moduleId},
          {"language", Number(module.language)},
          {"version", module.version},
          {"displayName", module.displayName},
          {"subject", module.subject},
          {"author", module.author},
          {"comments", module.comments},
          {"packageCode", module.packageCode},
          {"files", ListJson(module.files)},
          {"dependencies", ListJson(module.dependencies)},
          {"exclusions", ListJson(module.exclusions)},
          {"customActions", module.customActions},
          {"dialogs", module.dialogs},
          {"present", module.gallery.present},
          {"needsDownload", module.gallery.needsDownload},
          {"localPath", module.gallery.localPath},
          {"downloadFiles", MakeDownloadFilesJson(module.gallery.downloadFiles)}};
}

}  // namespace mmcat
