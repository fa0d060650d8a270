#include "client/commands/ModuleText.h"

#include "client/terminal/Style.h"
#include "client/terminal/TextTable.h"

namespace {

std::string Cell(const std::optional<long>& value) { return value ? std::to_string(*value) : ""; }

std::string Field(const std::string& name, const std::string& value) {
  constexpr size_t width = 16;
  return value.empty()
             ? ""
             : "  " + name + std::string(width - name.size(), ' ') + Printable(value) + '\n';
}

std::string PartHeading(const std::string& name, size_t count) {
  return "  " + Heading(name + " (" + std::to_string(count) + ')') + '\n';
}

constexpr char kIndent[] = "    ";

std::string Names(const std::string& heading, const std::vector<std::string>& names) {
  std::string text = PartHeading(heading, names.size());
  for (const std::string& name : names) {
    text += kIndent + Printable(name) + '\n';
  }
  return text;
}

std::string Files(const std::vector<FileDescription>& files) {
  TextTable table(
      {"Key", "Directory", "Target path", "File name", "Size", "Version", "Language", "Sequence"});
  for (const FileDescription& file : files) {
    table.Add({file.key, file.directory, file.targetPath, file.fileName, Cell(file.size),
               file.version, file.language, Cell(file.sequence)});
  }
  return PartHeading("Files", files.size()) + table.ToString(kIndent);
}

std::string Dependencies(const std::vector<DependencyDescription>& dependencies) {
  TextTable table({"Module ID", "Language", "Version"});
  for (const DependencyDescription& dependency : dependencies) {
    table.Add({dependency.moduleId, Cell(dependency.language), dependency.version});
  }
  return PartHeading("Dependencies", dependencies.size()) + table.ToString(kIndent);
}

std::string Exclusions(const std::vector<ExclusionDescription>& exclusions) {
  TextTable table({"Module ID", "Language", "From version", "To version"});
  for (const ExclusionDescription& exclusion : exclusions) {
    table.Add({exclusion.moduleId, exclusion.language, exclusion.minVersion, exclusion.maxVersion});
  }
  return PartHeading("Exclusions", exclusions.size()) + table.ToString(kIndent);
}

std::string DownloadFiles(const std::vector<DownloadFileDescription>& files) {
  TextTable table({"Location", "On media", "On the internet", "Size", "Checksum"});
  for (const DownloadFileDescription& file : files) {
    table.Add({file.location, file.mediaLocation, file.internetLocation, std::to_string(file.size),
               file.checkSum});
  }
  return PartHeading("Download files", files.size()) + table.ToString(kIndent);
}

std::string YesOrNo(bool value) { return value ? "yes" : "no"; }

}  // namespace

std::string ModuleText(const ModuleDescription& module) {
  std::string text = Heading(Printable(module.key)) + '\n';
  text += Field("Display name", module.displayName);
  text += Field("Module ID", module.moduleId);
  text += Field("Language", Cell(module.language));
  text += Field("Version", module.version);
  text += Field("Subject", module.subject);
  text += Field("Author", module.author);
  text += Field("Comments", module.comments);
  text += Field("Package code", module.packageCode);
  text += Field("Path", module.path);
  text += Field("Present", YesOrNo(module.gallery.present));
  text += Field("Needs download", YesOrNo(module.gallery.needsDownload));
  text += Field("Local path", module.gallery.localPath);
  if (!module.files.empty()) {
    text += Files(module.files);
  }
  if (!module.dependencies.empty()) {
    text += Dependencies(module.dependencies);
  }
  if (!module.exclusions.empty()) {
    text += Exclusions(module.exclusions);
  }
  if (!module.customActions.empty()) {
    text += Names("Custom actions", module.customActions);
  }
  if (!module.dialogs.empty()) {
    text += Names("Dialogs", module.dialogs);
  }
  if (!module.gallery.downloadFiles.empty()) {
    text += DownloadFiles(module.gallery.downloadFiles);
  }
  return text;
}
