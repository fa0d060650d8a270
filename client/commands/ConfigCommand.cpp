#include "client/catalog/UserPath.h"
#include "client/commands/Commands.h"
#include "client/settings/SettingsInForce.h"
#include "client/terminal/Text.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string FormatSource(const ValueInForce& value, const std::string& file) {
  switch (value.source) {
    case SettingSource::Arguments:
      return "command line";
    case SettingSource::File:
      return GetFileName(file) + (value.line ? ':' + std::to_string(*value.line) : "");
    case SettingSource::Environment:
      return value.variable;
    default:
      return "default";
  }
}

std::string FormatSettings(const SettingsInForce& settings) {
  TextTable table({"Setting", "From", "Value"});
  for (const ValueInForce& value : settings.values) {
    const std::string words = value.words.empty() ? "none" : value.words;
    table.AddRow({value.setting, FormatSource(value, settings.file), value.value.value_or(words)});
  }
  const std::string file = settings.file.empty() ? "none, " + settings.reason : settings.file;
  return "Settings file: " + MakePrintable(file) + '\n' + table.ToString("");
}

Json MakeSettingsJson(const SettingsInForce& settings) {
  Json list = Json::array();
  for (const ValueInForce& value : settings.values) {
    list.push_back({{"setting", value.setting},
                    {"value", value.value ? Json(*value.value) : Json(nullptr)},
                    {"source", GetSourceName(value.source)},
                    {"variable", value.variable},
                    {"line", value.line ? Json(*value.line) : Json(nullptr)}});
  }
  return list;
}

ExitCode Run(const OutputOptions& output) {
  Report report("config", output);
  const SettingsInForce& settings = CurrentSettings();
  report.Document()["file"] = settings.file;
  report.Document()["settings"] = MakeSettingsJson(settings);
  report.Print(FormatSettings(settings));
  return report.Finish();
}

}  // namespace

extern const Command kConfigCommand = {
    "config",
    "Show the settings in force, and where each comes from",
    "  mmcat config                           what is in force in this folder\n"
    "  mmcat config --folder samples/modules  with options of the command line\n"
    "  mmcat config --no-settings             without the file\n"
    "\n"
    "A team's mmcat.toml, after which \"mmcat check\" is all that has to be typed:\n"
    "  [catalog]\n"
    "  folder = [\"modules\", '\\\\server\\modules']\n"
    "  recursive = true\n"
    "  [check]\n"
    "  ignore = [\"duplicate-file\"]\n"
    "  baseline = \"known.json\"\n",
    PrepareCommand<Run>,
    {},
    SettingsUse::ToShow,
};

}  // namespace mmcat
