#include "client/commands/ModuleText.h"

#include "client/terminal/Style.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string FormatCell(const std::optional<long>& value) {
  return value ? std::to_string(*value) : "";
}

std::string FormatField(const std::string& name, const std::string& value) {
  constexpr size_t width = 16;
  return value.empty()
             ? ""
             : "  " + name + std::string(width - name.size(), ' ') + MakePrintable(value) + '\n';
}

std::string FormatPartHeading(const std::string& name, size_t count) {
  return "  " + MarkHeading(name + " (" + std::to_string(count) + ')') + '\n';
}

constexpr char kIndent[] = "    ";

std::string FormatNames(const std::string& heading, const std::vector<std::string>& names) {
  std::string text = FormatPartHeading(heading, names.size());
  for (const std::string& name : names) {
    text += kIndent + MakePrintable(name) + '\n';
  }
  return text;
}

std::string FormatFiles(const std::vector<FileFacts>& files) {
  TextTable table(
      {"Key", "Directory", "Target path", "File name", "Size", "Version", "Language", "Sequence"});
  for (const FileFacts& file : files) {
    table.AddRow({file.key, file.directory, file.targetPath, FormatFileName(file),
                  FormatCell(file.size), file.version, file.language, FormatCell(file.sequence)});
  }
  return FormatPartHeading("Files", files.size()) + table.ToString(kIndent);
}

std::string FormatDependencies(const std::vector<RequirementFacts>& dependencies) {
  TextTable table({"Module ID", "Language", "Version", "Carried from"});
  for (const RequirementFacts& dependency : dependencies) {
    table.AddRow({dependency.moduleId, FormatCell(dependency.language), dependency.version,
                  dependency.carriedFrom});
  }
  return FormatPartHeading("Dependencies", dependencies.size()) + table.ToString(kIndent);
}

std::string FormatExclusions(const std::vector<ExclusionFacts>& exclusions) {
  TextTable table({"Module ID", "Language", "From version", "To version", "Carried from"});
  for (const ExclusionFacts& exclusion : exclusions) {
    table.AddRow({exclusion.moduleId, FormatCell(exclusion.language), exclusion.minVersion,
                  exclusion.maxVersion, exclusion.carriedFrom});
  }
  return FormatPartHeading("Exclusions", exclusions.size()) + table.ToString(kIndent);
}

std::string FormatDownloadFiles(const std::vector<DownloadFileContents>& files) {
  TextTable table({"Location", "On media", "On the internet", "Size", "Checksum"});
  for (const DownloadFileContents& file : files) {
    table.AddRow({file.location, file.mediaLocation, file.internetLocation,
                  std::to_string(file.size), file.checkSum});
  }
  return FormatPartHeading("Download files", files.size()) + table.ToString(kIndent);
}

std::string FormatYesOrNo(bool value) { return value ? "yes" : "no"; }

}  // namespace

std::string FormatFileName(const FileFacts& file) {
  return file.shortName.empty() ? file.name : file.shortName + '|' + file.name;
}

std::string FormatModule(const ModuleContents& module) {
  std::string text = MarkHeading(MakePrintable(module.key)) + '\n';
  text += FormatField("Display name", module.displayName);
  text += FormatField("Module ID", module.moduleId);
  text += FormatField("Language", FormatCell(module.language));
  text += FormatField("Version", module.version);
  text += FormatField("Subject", module.subject);
  text += FormatField("Author", module.author);
  text += FormatField("Comments", module.comments);
  text += FormatField("Package code", module.packageCode);
  text += FormatField("Path", module.path);
  text += FormatField("Present", FormatYesOrNo(module.gallery.present));
  text += FormatField("Needs download", FormatYesOrNo(module.gallery.needsDownload));
  text += FormatField("Local path", module.gallery.localPath);
  if (!module.files.empty()) {
    text += FormatFiles(module.files);
  }
  if (!module.dependencies.empty()) {
    text += FormatDependencies(module.dependencies);
  }
  if (!module.exclusions.empty()) {
    text += FormatExclusions(module.exclusions);
  }
  if (!module.customActions.empty()) {
    text += FormatNames("Custom actions", module.customActions);
  }
  if (!module.dialogs.empty()) {
    text += FormatNames("Dialogs", module.dialogs);
  }
  if (!module.gallery.downloadFiles.empty()) {
    text += FormatDownloadFiles(module.gallery.downloadFiles);
  }
  return text;
}

}  // namespace mmcat
