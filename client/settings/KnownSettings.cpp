#include "client/settings/KnownSettings.h"

namespace mmcat {

const std::vector<KnownSetting>& KnownSettings() {
  static constexpr char kMachine[] = "that of this machine";
  using Type = SettingType;
  static const std::vector<KnownSetting> settings{
      {kCatalogTable,
       "folder",
       Type::Texts,
       true,
       "those of this machine",
       {"QM_MODULE_PATH", "QM_USER_MODULE_PATH"}},
      {kCatalogTable, "recursive", Type::Flag, false, "false", {}},
      {kCatalogTable, "gallery", Type::Text, true, kMachine, {"QM_GALLERY_ROOT"}},
      {kCatalogTable,
       "index",
       Type::Text,
       true,
       kMachine,
       {"QM_FILE_INDEX_DIR", "QM_MODULE_INDEX_DIR"}},
      {kCatalogTable, "data", Type::Text, true, kMachine, {"QM_DATA_DIR"}},
      {kCheckTable, "fail-on", Type::Text, false, "warning", {}},
      {kCheckTable, "ignore", Type::Texts, false, "", {}},
      {kCheckTable, "baseline", Type::Text, true, "", {}},
      {kCheckTable, "format", Type::Text, false, "text", {}},
      {kCheckTable, "relative-to", Type::Text, true, "the current folder", {}},
      {"output", "paths", Type::Text, false, "native", {}},
      {"output", "wide", Type::Flag, false, "false", {}},
      {"output", "no-color", Type::Flag, false, "false", {"NO_COLOR"}},
      {"output", "no-progress", Type::Flag, false, "false", {}},
      {"output", "quiet", Type::Flag, false, "false", {}},
  };
  return settings;
}

bool ReplacesCatalog(const KnownSetting& setting) {
  return setting.table == std::string(kCatalogTable) && setting.type != SettingType::Flag;
}

}  // namespace mmcat
