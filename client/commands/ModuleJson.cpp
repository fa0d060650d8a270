#include "client/commands/ModuleJson.h"

#include <sstream>

#include "client/commands/ModuleText.h"

namespace mmcat {

namespace {

Json MakeItemJson(const FileFacts& file) {
  return {{"key", file.key},
          {"directory", file.directory},
          {"targetPath", file.targetPath},
          {"isRedirected", file.isRedirected},
          {"fileName", FormatFileName(file)},
          {"fileSize", MakeNumberOrNull(file.size)},
          {"version", file.version},
          {"languages", MakeLanguagesJson(file.language)},
          {"sequence", MakeNumberOrNull(file.sequence)}};
}

Json MakeItemJson(const RequirementFacts& dependency) {
  return {{"key", dependency.key},
          {"moduleId", dependency.moduleId},
          {"language", MakeNumberOrNull(dependency.language)},
          {"version", dependency.version},
          {"carriedFrom", dependency.carriedFrom}};
}

Json MakeItemJson(const ExclusionFacts& exclusion) {
  return {{"key", exclusion.key},
          {"moduleId", exclusion.moduleId},
          {"language", MakeNumberOrNull(exclusion.language)},
          {"minVersion", exclusion.minVersion},
          {"maxVersion", exclusion.maxVersion},
          {"carriedFrom", exclusion.carriedFrom}};
}

Json MakeItemJson(const ComponentContents& component) {
  return {{"key", component.key},
          {"componentId", component.componentId},
          {"directory", component.directory},
          {"targetPath", component.targetPath},
          {"condition", component.condition},
          {"is64Bit", component.is64Bit},
          {"keyPath", component.keyPath}};
}

Json MakeItemJson(const CustomActionContents& action) {
  return {{"name", action.name},
          {"type", MakeNumberOrNull(action.type)},
          {"description", action.description},
          {"source", action.source},
          {"target", action.target}};
}

Json MakeItemJson(const ConfigurableItem& item) {
  return {{"name", item.name},
          {"format", MakeNumberOrNull(item.format)},
          {"type", item.type},
          {"defaultValue", item.defaultValue},
          {"displayName", item.displayName},
          {"description", item.description}};
}

Json MakeItemJson(const TableContents& table) {
  return {{"name", table.name}, {"rows", table.rows}, {"failure", table.failure}};
}

Json MakeItemJson(const DownloadFileContents& file) {
  return {{"location", file.location},
          {"mediaLocation", file.mediaLocation},
          {"internetLocation", file.internetLocation},
          {"fileSize", file.size},
          {"checkSum", file.checkSum}};
}

template <class Item>
Json MakeListJson(const std::vector<Item>& items) {
  Json list = Json::array();
  for (const Item& item : items) {
    list.push_back(MakeItemJson(item));
  }
  return list;
}

}  // namespace

Json MakeLanguagesJson(const std::string& languages) {
  Json list = Json::array();
  std::istringstream rest(languages);
  for (std::string part; std::getline(rest, part, ',');) {
    const size_t start = part.find_first_not_of(' ');
    part = start == std::string::npos ? ""
                                      : part.substr(start, part.find_last_not_of(' ') + 1 - start);
    constexpr size_t kMostDigits = 9;
    if (!part.empty() && part.size() <= kMostDigits &&
        part.find_first_not_of("0123456789") == std::string::npos) {
      list.push_back(std::stol(part));
    }
  }
  return list;
}

Json MakeDownloadFilesJson(const std::vector<DownloadFileContents>& files) {
  return MakeListJson(files);
}

Json MakeModuleJson(const ModuleContents& module) {
  Json actionNames = Json::array();
  for (const CustomActionContents& action : module.customActions) {
    actionNames.push_back(action.name);
  }
  return {{"path", module.path},
          {"key", module.key},
          {"moduleId", module.moduleId},
          {"language", MakeNumberOrNull(module.language)},
          {"version", module.version},
          {"displayName", module.displayName},
          {"subject", module.subject},
          {"author", module.author},
          {"comments", module.comments},
          {"packageCode", module.packageCode},
          {"files", MakeListJson(module.files)},
          {"dependencies", MakeListJson(module.dependencies)},
          {"exclusions", MakeListJson(module.exclusions)},
          {"customActions", std::move(actionNames)},
          {"dialogs", module.dialogs},
          {"platform", module.platform},
          {"minimumInstaller", MakeNumberOrNull(module.minimumInstaller)},
          {"components", MakeListJson(module.components)},
          {"actions", MakeListJson(module.customActions)},
          {"configurableItems", MakeListJson(module.configurableItems)},
          {"tables", MakeListJson(module.tables)},
          {"present", module.gallery.present},
          {"needsDownload", module.gallery.needsDownload},
          {"localPath", module.gallery.localPath},
          {"downloadFiles", MakeDownloadFilesJson(module.gallery.downloadFiles)}};
}

}  // namespace mmcat
