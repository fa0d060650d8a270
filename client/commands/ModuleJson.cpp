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
          {"customActions", module.customActions},
          {"dialogs", module.dialogs},
          {"present", module.gallery.present},
          {"needsDownload", module.gallery.needsDownload},
          {"localPath", module.gallery.localPath},
          {"downloadFiles", MakeDownloadFilesJson(module.gallery.downloadFiles)}};
}

}  // namespace mmcat
