#include "client/catalog/Inventory.h"
#include "client/commands/Commands.h"
#include "client/commands/CycloneDx.h"
#include "client/commands/ModuleJson.h"
#include "client/commands/NoModules.h"
#include "client/terminal/Csv.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string FormatInventory(const std::vector<ModuleFacts>& modules,
                            const std::vector<InventoryModule>& inventory) {
  TextTable table({"File", "Version", "Languages", "Size", "MD5", "Target path"});
  for (const InventoryModule& module : inventory) {
    const ModuleFacts& facts = modules[module.position];
    std::string line = facts.key.empty() ? facts.path : facts.key;
    for (const std::string& part : {facts.version, module.platform, module.author}) {
      line += part.empty() ? "" : "  " + part;
    }
    table.AddLine(line);
    if (!module.sha256.empty()) {
      table.AddLine("  SHA-256 " + module.sha256 + "  " + facts.path);
    }
    for (const InventoryFile& file : module.files) {
      table.AddRow({file.facts.name, file.facts.version, file.facts.language,
                    file.facts.size ? std::to_string(*file.facts.size) : "", file.md5,
                    file.facts.targetPath});
    }
  }
  return table.ToString("  ");
}

Json MakeInventoryJson(const std::vector<ModuleFacts>& modules,
                       const std::vector<InventoryModule>& inventory) {
  Json list = Json::array();
  for (const InventoryModule& module : inventory) {
    const ModuleFacts& facts = modules[module.position];
    Json files = Json::array();
    for (const InventoryFile& file : module.files) {
      files.push_back({{"key", file.facts.key},
                       {"name", file.facts.name},
                       {"version", file.facts.version},
                       {"languages", MakeLanguagesJson(file.facts.language)},
                       {"fileSize", MakeNumberOrNull(file.facts.size)},
                       {"targetPath", file.facts.targetPath},
                       {"md5", file.md5}});
    }
    list.push_back({{"key", facts.key},
                    {"moduleId", facts.moduleId},
                    {"language", MakeNumberOrNull(module.language)},
                    {"version", facts.version},
                    {"platform", module.platform},
                    {"author", module.author},
                    {"subject", module.subject},
                    {"packageCode", facts.packageCode},
                    {"present", facts.isPresent},
                    {"path", facts.path},
                    {"sha256", module.sha256},
                    {"files", std::move(files)}});
  }
  return list;
}

/// The inventory as CSV, with a row for each file, or one for a module without files.
std::string FormatInventoryCsv(const std::vector<ModuleFacts>& modules,
                               const std::vector<InventoryModule>& inventory) {
  Json rows = Json::array();
  for (const InventoryModule& module : inventory) {
    const ModuleFacts& facts = modules[module.position];
    const Json start{{"module", facts.key},
                     {"moduleVersion", facts.version},
                     {"moduleLanguage", MakeNumberOrNull(module.language)},
                     {"platform", module.platform},
                     {"author", module.author},
                     {"packageCode", facts.packageCode},
                     {"path", facts.path},
                     {"sha256", module.sha256}};
    for (const InventoryFile& file : module.files) {
      rows.push_back(start);
      rows.back().update({{"file", file.facts.name},
                          {"version", file.facts.version},
                          {"languages", file.facts.language},
                          {"fileSize", MakeNumberOrNull(file.facts.size)},
                          {"targetPath", file.facts.targetPath},
                          {"md5", file.md5}});
    }
    if (module.files.empty()) {
      rows.push_back(start);
    }
  }
  return FormatCsv(
      {"module", "moduleVersion", "moduleLanguage", "platform", "author", "packageCode", "file",
       "version", "languages", "fileSize", "targetPath", "md5", "sha256", "path"},
      rows);
}

ExitCode Run(const OutputOptions& output) {
  Report report("inventory", output);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  const ExitCode outcome = RequireModules(set.Modules().size());
  const std::vector<InventoryModule> inventory = TakeInventory(set, report);
  if (report.IsJson()) {
    report.Document()["modules"] = MakeInventoryJson(set.Modules(), inventory);
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatInventoryCsv(set.Modules(), inventory));
  } else if (report.Format() == OutputFormat::CycloneDx) {
    report.PrintConverted(FormatCycloneDx(set, inventory));
  } else if (outcome == kSuccess) {
    report.Print(FormatInventory(set.Modules(), inventory));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kInventoryCommand = {
    "inventory",
    "List versions, platforms, authors and hashes of modules and their files",
    "  mmcat inventory --format csv > inventory.csv\n"
    "  mmcat inventory --format cyclonedx --folder samples/modules > bom.json\n",
    PrepareCommand<Run>,
    {OutputFormat::Csv, OutputFormat::CycloneDx},
};

}  // namespace mmcat
