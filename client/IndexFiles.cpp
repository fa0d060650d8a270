#include "client/IndexFiles.h"

#include <algorithm>

#include "client/IniFile.h"
#include "client/Properties.h"
#include "common/Path.h"
#include "idl/siblings.h"

namespace {

bool IsNumber(const std::string& text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string WithLanguage(const std::string& key) {
  return key.find(':') == std::string::npos ? key + ":0" : key;
}

/// The module key of an entry "flag:key": none unless the flag is 0.
std::string KeyBehindFlag(const std::string& value) {
  const size_t colon = value.find(':');
  const bool names = colon != std::string::npos && value.substr(0, colon) == "0";
  return names ? WithLanguage(value.substr(colon + 1)) : "";
}

/// An entry for a system file may be a key without a flag as well.
std::string KeyOfPlatformEntry(const std::string& value) {
  const size_t colon = value.find(':');
  const bool hasFlag = colon != std::string::npos && IsNumber(value.substr(0, colon));
  return hasFlag || value.empty() ? KeyBehindFlag(value) : WithLanguage(value);
}

}  // namespace

std::vector<IndexEntry> ReadIndexEntries(Report& report) {
  const auto services =
      Create<IApplicationServices>(CLSID_ApplicationServices, "QmAppServices.dll");
  const std::string nameFolder = Text(*services, &IApplicationServices::get_ModuleIndexFolder);
  const std::string fileFolder = Text(*services, &IApplicationServices::get_FileIndexFolder);
  std::vector<IndexEntry> entries;
  const auto read = [&](const std::string& folder, const char* table, const wchar_t* section,
                        const auto& keyOf) {
    const std::string path = folder.empty() ? "" : ToUtf8(JoinPath(ToWide(folder), ToWide(table)));
    if (path.empty() || !PathExists(ToWide(path))) {
      return;
    }
    try {
      for (const IniLine& line : ReadIniSection(path, section)) {
        std::string key = keyOf(line);
        if (!key.empty()) {
          entries.push_back({table, line.name, std::move(key)});
        }
      }
    } catch (const ServerFailure& failure) {
      report.AddFailure(path, "", failure);
    }
  };
  read(nameFolder, kModuleIndex, L"modules", [](const IniLine& line) { return line.name; });
  read(fileFolder, "FilesToModules.ini", L"FilesToModules",
       [](const IniLine& line) { return KeyBehindFlag(line.value); });
  read(fileFolder, "PlatformFilesToModules.ini", L"PlatformFileToModule",
       [](const IniLine& line) { return KeyOfPlatformEntry(line.value); });
  return entries;
}
