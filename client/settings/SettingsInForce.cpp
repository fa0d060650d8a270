#include "client/settings/SettingsInForce.h"

#include <utility>

namespace mmcat {

namespace {

SettingsInForce& GetSettings() noexcept {
  static SettingsInForce settings;
  return settings;
}

}  // namespace

const char* GetSourceName(SettingSource source) noexcept {
  switch (source) {
    case SettingSource::Arguments:
      return "command-line";
    case SettingSource::File:
      return "file";
    case SettingSource::Environment:
      return "environment";
    default:
      return "default";
  }
}

void UseSettings(SettingsInForce settings) noexcept { GetSettings() = std::move(settings); }

const SettingsInForce& CurrentSettings() noexcept { return GetSettings(); }

}  // namespace mmcat
