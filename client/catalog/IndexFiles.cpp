#include "client/catalog/IndexFiles.h"

#include "client/catalog/IniSection.h"
#include "client/catalog/Properties.h"
#include "common/FileIndexEntry.h"
#include "common/Path.h"
#include "idl/siblings.h"
#include "text/Utf.h"

namespace mmcat {

std::vector<qm::merge::IndexEntry> ReadIndexEntries(Report& report) {
  const auto services =
      CreateObject<IApplicationServices>(CLSID_ApplicationServices, "QmAppServices.dll");
  const std::string nameFolder = ReadText(*services, &IApplicationServices::get_ModuleIndexFolder);
  const std::string fileFolder = ReadText(*services, &IApplicationServices::get_FileIndexFolder);
  std::vector<qm::merge::IndexEntry> entries;
  const auto read = [&](const std::string& folder, const char* table, const wchar_t* section,
                        const auto& keyOf) {
    const std::string path = folder.empty()
                                 ? ""
                                 : qm::text::ToUtf8(qm::common::JoinPath(qm::text::ToWide(folder),
                                                                         qm::text::ToWide(table)));
    if (path.empty() || !qm::common::PathExists(qm::text::ToWide(path))) {
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
      report.AddFailure(path, "", failure.HResult(), failure.what());
    }
  };
  read(nameFolder, kDisplayNameIndex, L"modules", [](const IniLine& line) { return line.name; });
  read(fileFolder, "FilesToModules.ini", L"FilesToModules", [](const IniLine& line) {
    return qm::text::ToUtf8(qm::common::ParseFileIndexEntry(qm::text::ToWide(line.value)));
  });
  read(fileFolder, "PlatformFilesToModules.ini", L"PlatformFileToModule", [](const IniLine& line) {
    return qm::text::ToUtf8(qm::common::ParsePlatformFileIndexEntry(qm::text::ToWide(line.value)));
  });
  return entries;
}

}  // namespace mmcat
