#include "client/catalog/ListedModules.h"

#include "client/catalog/Properties.h"
#include "client/terminal/TextTable.h"

ListedModule ReadModule(IMergeModule& module) {
  CComPtr<IMergeModuleTavik> newestModule;
  Check(CComPtr<IMergeModule>(&module).QueryInterface(newestModule.Put()));
  ListedModule listed;
  listed.path = Text(module, &IMergeModule::get_Path);
  listed.key = Text(module, &IMergeModule::get_Key);
  listed.moduleId = Text(module, &IMergeModule::get_ModuleID);
  listed.language = Number(module, &IMergeModule::get_Language);
  listed.version = Text(module, &IMergeModule::get_Version);
  listed.displayName = Text(module, &IMergeModule::get_DisplayName);
  listed.packageCode = Text(module, &IMergeModule::get_PackageCode);
  listed.fromGallery = !Flag(*newestModule, &IMergeModuleTavik::get_HasOrigin);
  listed.origin = Text(*newestModule, &IMergeModuleTavik::get_Origin);
  listed.object = std::move(newestModule);
  return listed;
}

namespace {

/// The name of a file below the folder heading that it is listed under; the path of a gallery
/// module.
std::string FileInFolder(const ListedModule& module) {
  const size_t slash = module.path.find_last_of('\\');
  return module.fromGallery || slash == std::string::npos ? module.path
                                                          : module.path.substr(slash + 1);
}

}  // namespace

std::vector<ListedModule> ReadModules(IMergeModules& modules, Report& report) {
  std::vector<ListedModule> list;
  list.reserve(static_cast<size_t>(Number(modules, &IMergeModules::get_Count)));
  ForEach<IMergeModule>(modules, [&](IMergeModule& module) {
    list.push_back(ReadModule(module));
    const ListedModule& listed = list.back();
    if (listed.moduleId.empty() || listed.packageCode.empty()) {
      // Either an unreadable file or a module that lacks them. Only a table tells which, and
      // reading tables costs too much to do it for every module.
      CComPtr<IMMDialogs> dialogs;
      const HRESULT hr = module.get_Dialogs(dialogs.Put());
      if (FAILED(hr)) {
        report.AddFailure(listed.path, "", hr, ServerFailure::Capture(hr).what());
      }
    }
  });
  return list;
}

std::string ModuleListText(const std::vector<ListedModule>& modules) {
  if (modules.empty()) {
    return "No modules\n";
  }
  TextTable table({"Key", "Version", "Language", "File", "Display name"});
  const ListedModule* previous = nullptr;
  for (const ListedModule& module : modules) {
    if (!previous || module.origin != previous->origin) {
      table.AddLine(module.fromGallery ? "Object gallery" : module.origin);
    }
    previous = &module;
    table.Add({module.key, module.version, std::to_string(module.language), FileInFolder(module),
               module.displayName});
  }
  return table.ToString("  ");
}

Json ModuleListJson(const std::vector<ListedModule>& modules) {
  Json list = Json::array();
  for (const ListedModule& module : modules) {
    list.push_back({{"key", module.key},
                    {"moduleId", module.moduleId},
                    {"language", module.language},
                    {"version", module.version},
                    {"displayName", module.displayName},
                    {"packageCode", module.packageCode},
                    {"fromGallery", module.fromGallery},
                    {"origin", module.origin},
                    {"path", module.path}});
  }
  return list;
}
