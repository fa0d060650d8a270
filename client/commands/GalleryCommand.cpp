#include <map>

#include "client/catalog/Catalog.h"
#include "client/catalog/GalleryFiles.h"
#include "client/catalog/ModuleContents.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/commands/ModuleJson.h"
#include "client/terminal/TextTable.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// A description file and the module that the catalog made from it.
struct GalleryEntry {
  GalleryFile file;
  const char* state = "";
  std::string note;          ///< why the catalog has no module for it
  std::string supersededBy;  ///< path, or else package code, of the module in its place
  std::string localVersion;
  GalleryContents gallery;
};

/// The modules of the catalog by package code and by key, ignoring case. Of modules that share a
/// package code or key, only the first is found.
class CatalogModules {
 public:
  CatalogModules() {
    ForEachItem<IMergeModule>(*Catalog().Modules(), [this](IMergeModule& module) {
      m_byPackageCode.emplace(qm::text::FoldCase(ReadText(module, &IMergeModule::get_PackageCode)),
                              &module);
      m_byKey.emplace(qm::text::FoldCase(ReadText(module, &IMergeModule::get_Key)), &module);
    });
  }

  qm::common::ComPtr<IMergeModule> FindByPackageCode(const std::string& code) const {
    return Find(m_byPackageCode, code);
  }
  qm::common::ComPtr<IMergeModule> FindByKey(const std::string& key) const {
    return Find(m_byKey, key);
  }

 private:
  using Index = std::map<std::string, qm::common::ComPtr<IMergeModule>>;  // by case-folded text

  static qm::common::ComPtr<IMergeModule> Find(const Index& index, const std::string& text) {
    const auto found = index.find(qm::text::FoldCase(text));
    return found == index.end() ? qm::common::ComPtr<IMergeModule>() : found->second;
  }

  Index m_byPackageCode;
  Index m_byKey;
};

const char* GetState(const GalleryContents& gallery) noexcept {
  if (gallery.present) {
    return gallery.needsDownload ? "newer" : "present";
  }
  return gallery.needsDownload ? "to be downloaded" : "missing";
}

/// Fills the entry from the module that the catalog made from the description.
void FillFromModule(GalleryEntry& entry, IMergeModule& module, Report& report) {
  qm::common::ComPtr<IMergeModuleTavik> newestModule;
  ThrowIfFailed(qm::common::ComPtr<IMergeModule>(&module).QueryInterface(newestModule.Put()));
  if (ReadFlag(*newestModule, &IMergeModuleTavik::get_HasOrigin)) {
    entry.localVersion = ReadText(module, &IMergeModule::get_Version);
  }
  std::vector<PartFailure> failures;
  entry.gallery = ReadGalleryContents(*newestModule, failures);
  entry.state = failures.empty() ? GetState(entry.gallery) : "unreadable";
  for (const PartFailure& failed : failures) {
    report.AddFailure(entry.file.path, failed.part, failed.failure.HResult(),
                      failed.failure.what());
  }
}

GalleryEntry MakeEntry(GalleryFile file, const CatalogModules& modules, Report& report) {
  GalleryEntry entry;
  entry.file = std::move(file);
  if (entry.file.failure) {
    entry.state = "unreadable";
    const ServerFailure& failure = *entry.file.failure;
    report.AddFailure(entry.file.path, "", failure.HResult(), failure.what());
    return entry;
  }
  if (const qm::common::ComPtr<IMergeModule> module =
          modules.FindByPackageCode(entry.file.packageCode)) {
    FillFromModule(entry, *module, report);
    return entry;
  }
  entry.state = "not listed";
  if (entry.file.moduleId.empty()) {
    entry.note = "names no module";
  } else if (const qm::common::ComPtr<IMergeModule> other = modules.FindByKey(entry.file.key)) {
    entry.supersededBy = ReadText(*other, &IMergeModule::get_Path);
    if (entry.supersededBy.empty()) {  // another description
      entry.supersededBy = ReadText(*other, &IMergeModule::get_PackageCode);
    }
    entry.note = "superseded by " + entry.supersededBy;
  }
  return entry;
}

std::string FormatGallery(const std::vector<GalleryEntry>& entries) {
  if (entries.empty()) {
    return "No gallery descriptions\n";
  }
  TextTable table({"State", "Module", "Version", "Local version", "Package code", "Local path"});
  TextTable files({"Download file", "On media", "On the internet", "Size", "Checksum"});
  bool hasFiles = false;
  for (const GalleryEntry& entry : entries) {
    table.AddRow({entry.state, entry.file.key, entry.file.version, entry.localVersion,
                  entry.file.packageCode,
                  entry.note.empty() ? entry.gallery.localPath : '(' + entry.note + ')'});
    if (!entry.gallery.downloadFiles.empty()) {
      hasFiles = true;
      files.AddLine(entry.file.key);
    }
    for (const DownloadFileContents& file : entry.gallery.downloadFiles) {
      files.AddRow({file.location, file.mediaLocation, file.internetLocation,
                    std::to_string(file.size), file.checkSum});
    }
  }
  return table.ToString("") + (hasFiles ? '\n' + files.ToString("  ") : "");
}

Json MakeGalleryJson(const std::vector<GalleryEntry>& entries) {
  Json list = Json::array();
  for (const GalleryEntry& entry : entries) {
    list.push_back({{"state", entry.state},
                    {"note", entry.note},
                    {"supersededBy", entry.supersededBy},
                    {"key", entry.file.key},
                    {"moduleId", entry.file.moduleId},
                    {"version", entry.file.version},
                    {"localVersion", entry.localVersion},
                    {"packageCode", entry.file.packageCode},
                    {"path", entry.file.path},
                    {"localPath", entry.gallery.localPath},
                    {"downloadFiles", MakeDownloadFilesJson(entry.gallery.downloadFiles)}});
  }
  return list;
}

ExitCode Run(const OutputOptions& output) {
  Report report("gallery", output);
  const CatalogModules modules;
  std::vector<GalleryEntry> entries;
  for (GalleryFile& file : ReadGalleryFiles()) {
    entries.push_back(MakeEntry(std::move(file), modules, report));
  }
  if (report.IsJson()) {
    report.Document()["descriptions"] = MakeGalleryJson(entries);
  } else {
    report.Print(FormatGallery(entries));
  }
  return report.Finish();
}

}  // namespace

extern const Command kGalleryCommand = {
    "gallery",
    "List the descriptions in the object gallery",
    "  mmcat gallery --gallery D:\\Gallery --folder C:\\Modules\n",
    PrepareCommand<Run>,
};

}  // namespace mmcat
