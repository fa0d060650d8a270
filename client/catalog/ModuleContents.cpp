#include "client/catalog/ModuleContents.h"

#include <algorithm>

#include "client/catalog/Properties.h"
#include "client/catalog/TableRows.h"
#include "idl/qmmmupdater.h"

namespace mmcat {

namespace {

std::vector<DownloadFileContents> ReadDownloadFiles(IMergeModule2& module) {
  std::vector<DownloadFileContents> files;
  ForEachItem<IMMGalleryDownloadFileCaskel>(
      *ReadObject(module, &IMergeModule2::get_DownloadFiles),
      [&](IMMGalleryDownloadFileCaskel& file) {
        files.push_back({ReadText(file, &IMMGalleryDownloadFileCaskel::get_Location),
                         ReadText(file, &IMMGalleryDownloadFileCaskel::get_MediaLocation),
                         ReadText(file, &IMMGalleryDownloadFileCaskel::get_InternetLocation),
                         ReadNumber(file, &IMMGalleryDownloadFileCaskel::get_FileSize),
                         ReadText(file, &IMMGalleryDownloadFileCaskel::get_CheckSum)});
      });
  return files;
}

std::vector<ComponentContents> ReadComponents(ISetModule& module) {
  std::vector<ComponentContents> components;
  ForEachItem<ISetComponent>(
      *ReadObject(module, &ISetModule::get_Components), [&](ISetComponent& component) {
        components.push_back({ReadText(component, &ISetComponent::get_Key),
                              ReadText(component, &ISetComponent::get_ComponentID),
                              ReadText(component, &ISetComponent::get_Directory),
                              ReadText(component, &ISetComponent::get_TargetPath),
                              ReadText(component, &ISetComponent::get_Condition),
                              ReadText(component, &ISetComponent::get_KeyPath),
                              ReadFlag(component, &ISetComponent::get_Is64Bit)});
      });
  return components;
}

std::vector<CustomActionContents> ReadCustomActions(ISetModule& module) {
  std::vector<CustomActionContents> actions;
  ForEachItem<ISetCustomAction>(
      *ReadObject(module, &ISetModule::get_CustomActions), [&](ISetCustomAction& action) {
        actions.push_back({ReadText(action, &ISetCustomAction::get_Name),
                           ReadOptionalNumber(action, &ISetCustomAction::get_Type),
                           ReadText(action, &ISetCustomAction::get_Source),
                           ReadText(action, &ISetCustomAction::get_Target),
                           ReadText(action, &ISetCustomAction::get_Description)});
      });
  return actions;
}

std::vector<ConfigurableItem> ReadConfigurableItems(ISetModule& module) {
  std::vector<ConfigurableItem> items;
  ForEachRow(module, L"ModuleConfiguration", [&](ISetRow& row) {
    items.push_back({ReadCell(row, L"Name").Text(), ReadCell(row, L"Format").Number(),
                     ReadCell(row, L"Type").Text(), ReadCell(row, L"DefaultValue").Text(),
                     ReadCell(row, L"DisplayName").Text(), ReadCell(row, L"Description").Text()});
  });
  return items;
}

std::vector<std::string> ReadDialogs(ISetModule& module) {
  std::vector<std::string> dialogs;
  ForEachRow(module, L"Dialog", [&](ISetRow& row) { dialogs.push_back(ReadCell(row, 1L).Text()); });
  return dialogs;
}

std::vector<TableContents> ReadTables(ISetModule& module) {
  std::vector<TableContents> tables;
  ForEachItem<ISetTable>(*ReadObject(module, &ISetModule::get_Tables), [&](ISetTable& table) {
    tables.push_back({ReadText(table, &ISetTable::get_Name),
                      ReadNumber(*ReadObject(table, &ISetTable::get_Rows), &ISetRows::get_Count),
                      SpellPathsIn(ReadText(table, &ISetTable::get_Failure))});
  });
  std::sort(tables.begin(), tables.end(),
            [](const TableContents& a, const TableContents& b) { return a.name < b.name; });
  return tables;
}

/// Sorts rows by their keys: tables have no order of their own that would help a reader.
template <class Facts>
std::vector<Facts> SortByKey(std::vector<Facts> rows) {
  std::stable_sort(rows.begin(), rows.end(),
                   [](const Facts& a, const Facts& b) { return a.key < b.key; });
  return rows;
}

}  // namespace

GalleryContents ReadGalleryContents(ISetModule& setModule, std::vector<PartFailure>& failures) {
  GalleryContents gallery;
  const char* part = "gallery";
  try {
    qm::common::ComPtr<IMergeModule2> module;
    ThrowIfFailed(ReadObject(setModule, &ISetModule::get_MergeModule).QueryInterface(module.Put()));
    gallery.present = ReadFlag(*module, &IMergeModule2::get_Present);
    gallery.needsDownload = ReadFlag(*module, &IMergeModule2::get_NeedsDownload);
    gallery.localPath = ReadPath(*module, &IMergeModule2::get_LocalPath);
    part = "download files";
    gallery.downloadFiles = ReadDownloadFiles(*module);
  } catch (const ServerFailure& failure) {
    failures.push_back({part, failure});
  }
  return gallery;
}

ModuleContents ReadModuleContents(const ModuleSet& set, size_t position) {
  const ModuleFacts& facts = set.Modules()[position];
  ISetModule& module = *facts.object;
  ModuleContents contents;
  contents.path = facts.path;
  contents.key = facts.key;
  contents.moduleId = facts.moduleId;
  contents.language = ReadOptionalNumber(module, &ISetModule::get_Language);
  contents.version = facts.version;
  contents.displayName = facts.displayName;
  contents.subject = ReadText(module, &ISetModule::get_Subject);
  contents.author = ReadText(module, &ISetModule::get_Author);
  contents.comments = ReadText(module, &ISetModule::get_Comments);
  contents.packageCode = facts.packageCode;
  contents.platform = ReadText(module, &ISetModule::get_Platform);
  contents.minimumInstaller = ReadOptionalNumber(module, &ISetModule::get_MinimumInstaller);
  contents.components = SortByKey(ReadComponents(module));
  contents.files = SortByKey(set.FilesOf(position));
  contents.dependencies = SortByKey(set.RequirementsOf(position));
  contents.exclusions = SortByKey(set.ExclusionsOf(position));
  contents.customActions = ReadCustomActions(module);
  contents.configurableItems = ReadConfigurableItems(module);
  contents.dialogs = ReadDialogs(module);
  contents.tables = ReadTables(module);
  contents.gallery = ReadGalleryContents(module, contents.failures);
  return contents;
}

}  // namespace mmcat
