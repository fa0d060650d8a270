#include <map>

#include "client/catalog/ModuleContents.h"
#include "client/catalog/ModuleSet.h"
#include "client/catalog/Properties.h"
#include "client/catalog/UserPath.h"
#include "client/commands/Commands.h"
#include "client/commands/ModuleJson.h"
#include "client/commands/NoModules.h"
#include "client/terminal/Csv.h"
#include "client/terminal/TextTable.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// A description file and the module that the catalog made from it.
struct GalleryEntry {
  DescriptionFacts file;
  const char* state = "";
  std::string note;          ///< why the catalog has no module for it
  std::string supersededBy;  ///< path, or else package code, of the module in its place
  std::string localVersion;
  GalleryContents gallery;
};

/// The modules of the set by package code and by key, ignoring case. Of modules that share a
/// package code or key, only the first is found.
class ModuleIndex {
 public:
  explicit ModuleIndex(const std::vector<ModuleFacts>& modules) {
    for (const ModuleFacts& module : modules) {
      m_byPackageCode.emplace(qm::text::FoldCase(module.packageCode), &module);
      m_byKey.emplace(qm::text::FoldCase(module.key), &module);
    }
  }

  /// Returns null if there is no such module.
  const ModuleFacts* FindByPackageCode(const std::string& code) const {
    return Find(m_byPackageCode, code);
  }
  const ModuleFacts* FindByKey(const std::string& key) const { return Find(m_byKey, key); }

 private:
  using Index = std::map<std::string, const ModuleFacts*>;  // by case-folded text

  static const ModuleFacts* Find(const Index& index, const std::string& text) {
    const auto found = index.find(qm::text::FoldCase(text));
    return found == index.end() ? nullptr : found->second;
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
void FillFromModule(GalleryEntry& entry, const ModuleFacts& module, Report& report) {
  if (!module.isFromGallery) {
    entry.localVersion = module.version;
  }
  std::vector<PartFailure> failures;
  entry.gallery = ReadGalleryContents(*module.object, failures);
  entry.state = failures.empty() ? GetState(entry.gallery) : "unreadable";
  for (const PartFailure& failed : failures) {
    report.AddFailure(
        {entry.file.path, failed.part, failed.failure.HResult(), failed.failure.what()});
  }
}

GalleryEntry MakeEntry(DescriptionFacts file, const ModuleIndex& modules, Report& report) {
  GalleryEntry entry;
  entry.file = std::move(file);
  if (entry.file.failure) {
    entry.state = "unreadable";
    const ServerFailure& failure = *entry.file.failure;
    report.AddFailure({entry.file.path, "", failure.HResult(), failure.what()});
    return entry;
  }
  if (const ModuleFacts* const module = modules.FindByPackageCode(entry.file.packageCode)) {
    FillFromModule(entry, *module, report);
    return entry;
  }
  entry.state = "not listed";
  if (entry.file.moduleId.empty()) {
    entry.note = "names no module";
  } else if (const ModuleFacts* const other = modules.FindByKey(entry.file.key)) {
    // Without a path, another description took its place.
    entry.supersededBy = other->path.empty() ? other->packageCode : other->path;
    entry.note = "superseded by " + entry.supersededBy;
  }
  return entry;
}

std::string FormatGallery(const std::vector<GalleryEntry>& entries) {
  if (entries.empty()) {
    return "No gallery descriptions\n";
  }
  TextTable table({"Module", "State", "Version", "Local version", "Package code", "Local path"});
  TextTable files({"Download file", "On media", "On the internet", "Size", "Checksum"});
  bool hasFiles = false;
  for (const GalleryEntry& entry : entries) {
    // A description that names no module is shown by its file name.
    const std::string name = entry.file.key.empty() ? GetFileName(entry.file.path) : entry.file.key;
    table.AddRow({name, entry.state, entry.file.version, entry.localVersion, entry.file.packageCode,
                  entry.note.empty() ? entry.gallery.localPath : '(' + entry.note + ')'});
    if (!entry.gallery.downloadFiles.empty()) {
      hasFiles = true;
      files.AddLine(name);
    }
    for (const DownloadFileContents& file : entry.gallery.downloadFiles) {
      files.AddRow({file.location.empty() ? "(no name)" : file.location, file.mediaLocation,
                    file.internetLocation, std::to_string(file.size), file.checkSum});
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
  const ModuleSet set;
  const ModuleIndex modules(set.Modules());
  std::vector<GalleryEntry> entries;
  for (DescriptionFacts& file : set.Descriptions()) {
    entries.push_back(MakeEntry(std::move(file), modules, report));
  }
  const ExitCode outcome = entries.empty() ? RequireModules(set.Modules().size()) : kSuccess;
  if (report.IsJson()) {
    report.Document()["descriptions"] = MakeGalleryJson(entries);
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatCsv({"state", "note", "supersededBy", "key", "moduleId", "version",
                                     "localVersion", "packageCode", "path", "localPath"},
                                    MakeGalleryJson(entries)));
  } else if (outcome == kSuccess) {
    report.Print(FormatGallery(entries));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kGalleryCommand = {
    "gallery",
    "List the descriptions in the object gallery",
    "  mmcat gallery --gallery samples/gallery --folder samples/modules\n",
    PrepareCommand<Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
