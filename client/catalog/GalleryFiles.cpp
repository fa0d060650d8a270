#include "client/catalog/GalleryFiles.h"

#include <algorithm>
#include <cstdlib>

#include "client/catalog/FileNames.h"
#include "client/catalog/IniSection.h"
#include "client/catalog/Properties.h"
#include "common/FolderFiles.h"
#include "common/ModuleKey.h"
#include "common/Path.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

constexpr std::wstring_view kExtension = L".ini";

/// The value of the first line with this name; empty if there is no such line.
std::string FindValue(const std::vector<IniLine>& lines, const char* name) {
  const std::string folded = qm::text::FoldCase(name);
  const auto found = std::find_if(lines.begin(), lines.end(), [&](const IniLine& line) {
    return qm::text::FoldCase(line.name) == folded;
  });
  return found == lines.end() ? "" : found->value;
}

void ReadGalleryFile(GalleryFile& file) {
  const std::vector<IniLine> lines = ReadIniSection(file.path, L"MergeModule");
  file.moduleId = FindValue(lines, "ModuleID");
  file.version = FindValue(lines, "Version");
  const long language = std::strtol(FindValue(lines, "Language").c_str(), nullptr, 10);
  if (!file.moduleId.empty()) {
    file.key =
        qm::text::ToUtf8(qm::common::MakeModuleKey(qm::text::ToWide(file.moduleId), language));
  }
}

}  // namespace

std::vector<GalleryFile> ReadGalleryFiles() {
  const auto services =
      CreateObject<IApplicationServices>(CLSID_ApplicationServices, "QmAppServices.dll");
  const std::string root = ReadText(*services, &IApplicationServices::get_GalleryRoot);
  if (root.empty()) {
    return {};
  }
  const qm::common::WideString folder =
      qm::common::JoinPath(qm::text::ToWide(root), L"ObjectGallery");
  std::vector<GalleryFile> files;
  for (const std::wstring& name : FindFileNames(qm::common::JoinPath(folder, L"*.ini"))) {
    if (!qm::common::HasExtension(name, kExtension)) {
      continue;  // only the short name has the extension
    }
    GalleryFile file;
    file.path = qm::text::ToUtf8(qm::common::JoinPath(folder, name));
    file.packageCode =
        qm::text::ToUtf8(std::wstring_view(name).substr(0, name.size() - kExtension.size()));
    try {
      ReadGalleryFile(file);
    } catch (const ServerFailure& failure) {
      file.failure = failure;
    }
    files.push_back(std::move(file));
  }
  return files;
}

}  // namespace mmcat
