#include "client/commands/ModuleText.h"

#include "client/terminal/Style.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string Cell(const std::optional<long>& value) { return value ? std::to_string(*value) : ""; }

std::string Field(const std::string& name, const std::string& value) {
  constexpr size_t width = 16;
  return value.empty()
             ? ""
             : "  " + name + std::string(width - name.size(), ' ') + MakePrintable(value) + '\n';
}

std::string PartHeading(const std::string& name, size_t count) {
  return "  " + MarkHeading(name + " (" + std::to_string(count) + ')') + '\n';
}

constexpr char kIndent[] = "    ";

std::string Names(const std::string& heading, const std::vector<std::string>& names) {
  std::string text = PartHeading(heading, names.size());
  for (const std::string& name : names) {
    text += kIndent + MakePrintable(name) + '\n';
  }
  return text;
}

std::string Files(const std::vector<FileContents>& files) {
  TextTable table(
      {"Key", "Directory", "Target path", "File name", "Size", "Version", "Language", "Sequence"});
  for (const FileContents& file : files) {
    table.AddRow({file.key, file.directory, file.targetPath, file.fileName, Cell(file.size),
                  file.version, file.language, Cell(file.sequence)});
  }
  return PartHeading("Files", files.size()) + table.ToString(kIndent);
}

std::string Dependencies(const std::vector<DependencyContents>& dependencies) {
  TextTable table({"Module ID", "Language", "Version"});
  for (const DependencyContents& dependency : dependencies) {
    table.AddRow({dependency.moduleId, Cell(dependency.language), dependency.version});
  }
  return PartHeading("Dependencies", dependencies.size()) + table.ToString(kIndent);
}

std::string Exclusions(const std::vector<ExclusionContents>& exclusions) {
  TextTable table({"Module ID", "Language", "From version", "To version"});
  for (const ExclusionContents& exclusion : exclusions) {
    table.AddRow(
        {exclusion.moduleId, exclusion.language, exclusion.minVersion, exclusion.maxVersion});
  }
  return PartHeading("Exclusions", exclusions.size()) + table.ToString(kIndent);
}

std::string DownloadFiles(const std::vector<DownloadFileContents>& files) {
  TextTable table({"Location", "On media", "On the internet", "Size", "Checksum"});
  for (const DownloadFileContents& file : files) {
    table.AddRow({file.location, file.mediaLocation, file.internetLocation,
                  std::to_string(file.size), file.checkSum});
  }
  return PartHeading("Download files", files.size()) + table.ToString(kIndent);
}

std::string YesOrNo(bool value) { return value ? "yes" : "no"; }

}  // namespace

std::string FormatModule(const ModuleContents& module) {
  std::string text = MarkHeading(MakePrintable(module.key)) + '\n';
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

}  // namespace mmcat
