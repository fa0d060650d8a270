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

std::vector<std::string> ReadCustomActions(ISetModule& module) {
  std::vector<std::string> names;
  ForEachItem<ISetCustomAction>(*ReadObject(module, &ISetModule::get_CustomActions),
                                [&](ISetCustomAction& action) {
                                  names.push_back(ReadText(action, &ISetCustomAction::get_Name));
                                });
  return names;
}

/// Reads the first column of a table. Returns nothing if the module does not have the table.
std::vector<std::string> ReadFirstColumn(ISetModule& module, const wchar_t* tableName) {
  std::vector<std::string> cells;
  ForEachRow(module, tableName, [&](ISetRow& row) { cells.push_back(ReadCell(row, 1L).Text()); });
  return cells;
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
  contents.files = SortByKey(set.FilesOf(position));
  contents.dependencies = SortByKey(set.RequirementsOf(position));
  contents.exclusions = SortByKey(set.ExclusionsOf(position));
  contents.customActions = ReadCustomActions(module);
  contents.dialogs = ReadFirstColumn(module, L"Dialog");
  contents.gallery = ReadGalleryContents(module, contents.failures);
  return contents;
}

}  // namespace mmcat
