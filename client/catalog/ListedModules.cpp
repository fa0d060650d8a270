#include "client/catalog/ListedModules.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "client/catalog/Properties.h"
#include "client/catalog/UserPath.h"
#include "client/terminal/Csv.h"
#include "client/terminal/TextTable.h"
#include "text/Fold.h"

namespace mmcat {

ListedModule ReadModule(IMergeModule& module) {
  qm::common::ComPtr<IMergeModuleTavik> newestModule;
  ThrowIfFailed(qm::common::ComPtr<IMergeModule>(&module).QueryInterface(newestModule.Put()));
  ListedModule listed;
  listed.path = ReadPath(module, &IMergeModule::get_Path);
  listed.key = ReadText(module, &IMergeModule::get_Key);
  listed.moduleId = ReadText(module, &IMergeModule::get_ModuleID);
  if (!listed.moduleId.empty()) {
    listed.language = ReadNumber(module, &IMergeModule::get_Language);
  }
  listed.version = ReadText(module, &IMergeModule::get_Version);
  listed.displayName = ReadDisplayName(module, &IMergeModule::get_Path);
  listed.packageCode = ReadText(module, &IMergeModule::get_PackageCode);
  listed.fromGallery = !ReadFlag(*newestModule, &IMergeModuleTavik::get_HasOrigin);
  listed.origin = ReadPath(*newestModule, &IMergeModuleTavik::get_Origin);
  listed.object = std::move(newestModule);
  return listed;
}

namespace {

/// The folder heading that a module is listed under.
std::string FormatFolder(const ListedModule& module) {
  const size_t name = GetFileName(module.path).size();
  const std::string folder = module.path.substr(0, module.path.size() - name);
  return !module.fromGallery ? module.origin
         : folder.empty()    ? "Object gallery"
                             : "Object gallery: " + folder.substr(0, folder.size() - 1);
}

struct Listing {
  size_t folder;     ///< its number in the order of the collection
  std::string file;  ///< case-folded
  const ListedModule* module;
};

/// The modules by folder and then by file name, which is the first cell of a row.
std::vector<Listing> SortByFile(const std::vector<ListedModule>& modules) {
  std::map<std::string, size_t> folders;
  std::vector<Listing> sorted;
  for (const ListedModule& module : modules) {
    const size_t folder = folders.try_emplace(FormatFolder(module), folders.size()).first->second;
    sorted.push_back({folder, qm::text::FoldCase(GetFileName(module.path)), &module});
  }
  std::stable_sort(sorted.begin(), sorted.end(), [](const Listing& a, const Listing& b) {
    return std::tie(a.folder, a.file) < std::tie(b.folder, b.file);
  });
  return sorted;
}

/// The display name in a row. Empty if it is only the path, which the row already shows.
std::string FormatName(const ListedModule& module) {
  return module.isUnreadable                 ? "(unreadable)"
         : module.displayName == module.path ? ""
                                             : module.displayName;
}

}  // namespace

std::vector<ListedModule> ReadModules(IMergeModules& modules, Report& report) {
  std::vector<ListedModule> list;
  list.reserve(static_cast<size_t>(ReadNumber(modules, &IMergeModules::get_Count)));
  ForEachItem<IMergeModule>(modules, [&](IMergeModule& module) {
    list.push_back(ReadModule(module));
    const ListedModule& listed = list.back();
    if (listed.moduleId.empty() || listed.packageCode.empty()) {
      // Either an unreadable file or a module that lacks them. Only a table shows which, and
      // reading tables costs too much to do it for every module.
      qm::common::ComPtr<IMMDialogs> dialogs;
      const HRESULT hr = module.get_Dialogs(dialogs.Put());
      if (FAILED(hr)) {
        list.back().isUnreadable = true;
        report.AddFailure({listed.path, "", hr, ServerFailure::Capture(hr).what()});
      }
    }
  });
  return list;
}

std::string FormatModules(const std::vector<ListedModule>& modules) {
  TextTable table({"File", "Display name", "Version", "Language", "Key"});
  std::optional<size_t> folder;
  for (const Listing& listing : SortByFile(modules)) {
    const ListedModule& module = *listing.module;
    if (folder != listing.folder) {
      table.AddLine(FormatFolder(module));
      folder = listing.folder;
    }
    const std::string file = module.path.empty() ? kNoFile : GetFileName(module.path);
    table.AddRow({file, FormatName(module), module.version,
                  module.language ? std::to_string(*module.language) : "", module.key});
  }
  return table.ToString("  ");
}

std::string FormatModulesCsv(const std::vector<ListedModule>& modules) {
  return FormatCsv({"key", "moduleId", "language", "version", "displayName", "packageCode",
                    "fromGallery", "origin", "path"},
                   MakeModulesJson(modules));
}

Json MakeModulesJson(const std::vector<ListedModule>& modules) {
  Json list = Json::array();
  for (const ListedModule& module : modules) {
    list.push_back({{"key", module.key},
                    {"moduleId", module.moduleId},
                    {"language", MakeNumberOrNull(module.language)},
                    {"version", module.version},
                    {"displayName", module.displayName},
                    {"packageCode", module.packageCode},
                    {"fromGallery", module.fromGallery},
                    {"origin", module.origin},
                    {"path", module.path}});
  }
  return list;
}

}  // namespace mmcat
