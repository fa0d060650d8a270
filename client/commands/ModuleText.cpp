#include "client/commands/ModuleText.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "client/terminal/Page.h"
#include "client/terminal/Style.h"
#include "client/terminal/Text.h"
#include "client/terminal/TextTable.h"
#include "client/terminal/TextWidth.h"

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

std::string FormatInstaller(const ModuleContents& module) {
  const std::optional<long>& version = module.minimumInstaller;
  return version
             ? std::to_string(*version / 100) + '.' + std::to_string(*version % 100) + " or later"
             : "";
}

std::string FormatComponents(const std::vector<ComponentContents>& components) {
  TextTable table({"Key", "64-bit", "Condition", "Target path", "Key path", "Component ID"});
  table.KeepWhole();
  for (const ComponentContents& component : components) {
    table.AddRow({component.key, component.is64Bit ? "yes" : "", component.condition,
                  component.targetPath, component.keyPath, component.componentId});
  }
  return FormatPartHeading("Components", components.size()) + table.ToString(kIndent);
}

std::string FormatCustomActions(const std::vector<CustomActionContents>& actions) {
  TextTable table({"Name", "What it does", "Type", "Source", "Target"});
  table.KeepWhole();
  for (const CustomActionContents& action : actions) {
    table.AddRow(
        {action.name, action.description, FormatCell(action.type), action.source, action.target});
  }
  return FormatPartHeading("Custom actions", actions.size()) + table.ToString(kIndent);
}

/// The format of a configurable item (ModuleConfiguration.Format) in words.
std::string FormatItemFormat(const std::optional<long>& format) {
  constexpr const char* kFormats[] = {"text", "key", "number", "bits"};
  return format && *format >= 0 && *format < 4 ? kFormats[*format] : FormatCell(format);
}

std::string FormatConfigurableItems(const std::vector<ConfigurableItem>& items) {
  TextTable table({"Name", "Format", "Default", "Display name", "Type", "Description"});
  table.KeepWhole();
  for (const ConfigurableItem& item : items) {
    table.AddRow({item.name, FormatItemFormat(item.format), item.defaultValue, item.displayName,
                  item.type, item.description});
  }
  return FormatPartHeading("Configurable items", items.size()) + table.ToString(kIndent);
}

std::string FormatTables(const std::vector<TableContents>& tables) {
  TextTable table({"Name", "Rows", "Failure"});
  table.KeepWhole();
  for (const TableContents& one : tables) {
    table.AddRow({one.name, std::to_string(one.rows), one.failure});
  }
  return FormatPartHeading("Tables", tables.size()) + table.ToString(kIndent);
}

/// Shortens a name, possibly with a description in parentheses, to `width` columns.
std::string ShortenName(const std::string& name, size_t width) {
  const std::string& ellipsis = CurrentPage().ellipsis;
  return !name.empty() && name.back() == ')' ? ShortenBefore(name, 1, width, ellipsis)
                                             : ShortenMiddle(name, width, ellipsis);
}

/// The number of names, then as many of them as fit into three lines of the page: "4: one (x2), two
/// and 1 more (--full shows all)". Empty if there are no names.
std::string FormatList(const std::vector<std::string>& names) {
  constexpr size_t kLines = 3;
  constexpr size_t kHeading = 18;  // columns before the names
  constexpr size_t kRest = 34;     // columns of " and 100 more (--full shows all)"
  constexpr size_t kLongest = 60;  // columns of a name
  const Page& page = CurrentPage();
  std::vector<std::pair<std::string, size_t>> counted;
  std::map<std::string, size_t> positions;
  for (const std::string& name : names) {
    const auto [found, isNew] = positions.try_emplace(name, counted.size());
    if (isNew) {
      counted.emplace_back(name, 0);
    }
    ++counted[found->second].second;
  }
  std::string text = names.empty() ? "" : std::to_string(names.size()) + ": ";
  size_t left = names.size();
  bool isShortened = false;
  constexpr char kHint[] = " (--full shows all)";
  for (const auto& [name, count] : counted) {
    std::string piece = page.width ? ShortenName(name, kLongest) : name;
    isShortened = isShortened || piece != name;
    piece += count > 1 ? " (x" + std::to_string(count) + ')' : "";
    const bool isFirst = left == names.size();
    if (page.width && !isFirst &&
        MeasureWidth(text + piece) + kRest > kLines * (*page.width - kHeading)) {
      return text + " and " + std::to_string(left) + " more" + kHint;
    }
    text += (isFirst ? "" : ", ") + piece;
    left -= count;
  }
  return isShortened ? text + kHint : text;
}

/// The same for what `getName` makes of items.
template <class Item, class GetName>
std::string FormatList(const std::vector<Item>& items, GetName getName) {
  std::vector<std::string> names;
  std::transform(items.begin(), items.end(), std::back_inserter(names), getName);
  return FormatList(names);
}

/// The name of a row without the GUID that makes it unique among modules.
std::string RemoveGuid(const std::string& name) {
  constexpr size_t kGuidSize = 36;
  const size_t dot = name.rfind('.');
  const bool hasGuid =
      dot != std::string::npos && name.size() - dot == kGuidSize + 1 &&
      name.find_first_not_of("0123456789ABCDEFabcdef_", dot + 1) == std::string::npos;
  return hasGuid ? name.substr(0, dot) : name;
}

std::string FormatRequirementName(const RequirementFacts& requirement) {
  return requirement.version.empty() ? requirement.moduleId
                                     : requirement.moduleId + " from " + requirement.version;
}

std::string FormatComponentCounts(const std::vector<ComponentContents>& components) {
  const auto countIf = [&](auto condition) {
    return std::count_if(components.begin(), components.end(), condition);
  };
  const auto wide = countIf([](const ComponentContents& one) { return one.is64Bit; });
  const auto conditional =
      countIf([](const ComponentContents& one) { return !one.condition.empty(); });
  return components.empty()
             ? ""
             : std::to_string(components.size()) +
                   (wide > 0 ? ", " + std::to_string(wide) + " of them 64-bit" : "") +
                   (conditional > 0 ? ", " + std::to_string(conditional) + " with a condition"
                                    : "");
}

std::string FormatIdentity(const ModuleContents& module) {
  std::string text = MarkHeading(MakePrintable(module.key)) + '\n';
  text += FormatField("Display name", module.displayName);
  text += FormatField("Module ID", module.moduleId);
  text += FormatField("Version", module.version);
  text += FormatField("Language", FormatCell(module.language));
  text += FormatField("Platform", module.platform);
  text += FormatField("Installer", FormatInstaller(module));
  text += FormatField("Author", module.author);
  return text;
}

std::string FormatFiles(const std::vector<FileFacts>& files) {
  TextTable table(
      {"File name", "Version", "Size", "Target path", "Key", "Directory", "Language", "Sequence"});
  table.KeepWhole();
  for (const FileFacts& file : files) {
    table.AddRow({FormatFileName(file), file.version, FormatCell(file.size), file.targetPath,
                  file.key, file.directory, file.language, FormatCell(file.sequence)});
  }
  return FormatPartHeading("Files", files.size()) + table.ToString(kIndent);
}

std::string FormatDependencies(const std::vector<RequirementFacts>& dependencies) {
  TextTable table({"Module ID", "Language", "Version", "Carried from"});
  table.KeepWhole();
  for (const RequirementFacts& dependency : dependencies) {
    table.AddRow({dependency.moduleId, FormatCell(dependency.language), dependency.version,
                  dependency.carriedFrom});
  }
  return FormatPartHeading("Dependencies", dependencies.size()) + table.ToString(kIndent);
}

std::string FormatExclusions(const std::vector<ExclusionFacts>& exclusions) {
  TextTable table({"Module ID", "Language", "From version", "To version", "Carried from"});
  table.KeepWhole();
  for (const ExclusionFacts& exclusion : exclusions) {
    table.AddRow({exclusion.moduleId, FormatCell(exclusion.language), exclusion.minVersion,
                  exclusion.maxVersion, exclusion.carriedFrom});
  }
  return FormatPartHeading("Exclusions", exclusions.size()) + table.ToString(kIndent);
}

std::string FormatDownloadFiles(const std::vector<DownloadFileContents>& files) {
  TextTable table({"Location", "On media", "On the internet", "Size", "Checksum"});
  table.KeepWhole();
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

std::string FormatModuleSummary(const ModuleContents& module) {
  std::string text = FormatIdentity(module);
  text += FormatField("Path", module.path);
  if (module.gallery.needsDownload || !module.gallery.present) {
    text += FormatField("Needs download", FormatYesOrNo(module.gallery.needsDownload));
  }
  text += FormatField("Files", FormatList(module.files, [](const auto& one) { return one.name; }));
  text += FormatField("Needs", FormatList(module.dependencies, FormatRequirementName));
  text += FormatField("Excludes",
                      FormatList(module.exclusions, [](const auto& one) { return one.moduleId; }));
  text += FormatField("Components", FormatComponentCounts(module.components));
  text += FormatField("Custom actions", FormatList(module.customActions, [](const auto& one) {
                        return RemoveGuid(one.name) + " (" + one.description + ')';
                      }));
  text += FormatField("Configurable", FormatList(module.configurableItems, [](const auto& one) {
                        return RemoveGuid(one.name) + " (" + FormatItemFormat(one.format) + ')';
                      }));
  text += FormatField("Dialogs", FormatList(module.dialogs, RemoveGuid));
  text += FormatField("Tables", FormatList(module.tables, [](const auto& one) {
                        return one.name + ' ' +
                               (one.failure.empty() ? std::to_string(one.rows) : "(damaged)");
                      }));
  return text;
}

std::string FormatModule(const ModuleContents& module) {
  std::string text = FormatIdentity(module);
  text += FormatField("Subject", module.subject);
  text += FormatField("Comments", module.comments);
  text += FormatField("Package code", module.packageCode);
  text += FormatField("Path", module.path);
  text += FormatField("Present", FormatYesOrNo(module.gallery.present));
  text += FormatField("Needs download", FormatYesOrNo(module.gallery.needsDownload));
  text += FormatField("Local path", module.gallery.localPath);
  const auto add = [&](const auto& items, auto format) {
    text += items.empty() ? "" : format(items);
  };
  add(module.files, FormatFiles);
  add(module.components, FormatComponents);
  add(module.dependencies, FormatDependencies);
  add(module.exclusions, FormatExclusions);
  add(module.customActions, FormatCustomActions);
  add(module.configurableItems, FormatConfigurableItems);
  add(module.dialogs, [](const auto& names) { return FormatNames("Dialogs", names); });
  add(module.gallery.downloadFiles, FormatDownloadFiles);
  add(module.tables, FormatTables);
  return text;
}

}  // namespace mmcat
