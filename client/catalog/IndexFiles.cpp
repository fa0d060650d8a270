#include "client/catalog/IndexFiles.h"

#include "client/catalog/IniSection.h"
#include "client/catalog/Properties.h"
#include "common/FileIndexEntry.h"
#include "common/Path.h"
#include "idl/siblings.h"
#include "text/Utf.h"

using qm::text::ToUtf8;
using qm::text::ToWide;

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
      report.AddFailure(path, "", failure.Result(), failure.what());
    }
  };
  read(nameFolder, kModuleIndex, L"modules", [](const IniLine& line) { return line.name; });
  read(fileFolder, "FilesToModules.ini", L"FilesToModules",
       [](const IniLine& line) { return ToUtf8(ModuleOfFileEntry(ToWide(line.value))); });
  read(fileFolder, "PlatformFilesToModules.ini", L"PlatformFileToModule",
       [](const IniLine& line) { return ToUtf8(ModuleOfPlatformFileEntry(ToWide(line.value))); });
  return entries;
}
