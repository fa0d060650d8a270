#include "analysis/IndexFiles.h"

#include "analysis/CaptureFailure.h"
#include "com/error/Raise.h"
#include "common/FileIndexEntry.h"
#include "common/Path.h"
#include "gallery/IniAccess.h"
#include "text/Utf.h"

namespace qm::analysis {

namespace {

/// An index file, and how its lines name modules.
struct IndexFile {
  const wchar_t* name;
  const wchar_t* section;
  common::WideString (*getModuleKey)(const common::WideString& name,
                                     const common::WideString& value);
};

constexpr IndexFile kDisplayNames = {
    L"modules.ini", L"modules",
    [](const common::WideString& name, const common::WideString&) { return name; }};
constexpr IndexFile kFiles = {L"FilesToModules.ini", L"FilesToModules",
                              [](const common::WideString&, const common::WideString& value) {
                                return common::ParseFileIndexEntry(value);
                              }};
// The section is in the singular, unlike the file.
constexpr IndexFile kPlatformFiles = {
    L"PlatformFilesToModules.ini", L"PlatformFileToModule",
    [](const common::WideString&, const common::WideString& value) {
      return common::ParsePlatformFileIndexEntry(value);
    }};

void ReadIndexFile(const common::WideString& path, const IndexFile& file,
                   std::vector<merge::IndexEntry>& entries) {
  const common::ComPtr<IIniReader> reader = gallery::CreateIniReader();
  com::RaiseIfFailed(reader->Load(com::AllocateBstr(path).Get()));
  gallery::ForEachLine(
      *reader, file.section, [&](const common::WideString& name, const common::WideString& value) {
        const common::WideString key = file.getModuleKey(name, value);
        if (!key.empty()) {
          entries.push_back({text::ToUtf8(file.name), text::ToUtf8(name), text::ToUtf8(key)});
        }
      });
}

void AddIndexFile(const common::WideString& folder, const IndexFile& file,
                  std::vector<merge::IndexEntry>& all, std::vector<LoadFailure>& failures) {
  const common::WideString path = common::JoinPath(folder, file.name);
  if (folder.empty() || !common::PathExists(path)) {
    return;
  }
  std::vector<merge::IndexEntry> entries;
  if (const auto failure = CaptureFailure([&] { ReadIndexFile(path, file, entries); })) {
    failures.push_back(
        {text::ToUtf8(path), DescribeFailure(*failure, text::ToUtf8(path)), failure->hr});
  } else {
    all.insert(all.end(), std::make_move_iterator(entries.begin()),
               std::make_move_iterator(entries.end()));
  }
}

}  // namespace

IndexContents ReadIndexFiles(std::vector<LoadFailure>& failures) {
  const common::ComPtr<IApplicationServices> services = gallery::CreateApplicationServices();
  const common::WideString names =
      gallery::GetServiceText(*services, &IApplicationServices::get_ModuleIndexFolder);
  const common::WideString files =
      gallery::GetServiceText(*services, &IApplicationServices::get_FileIndexFolder);
  IndexContents contents;
  AddIndexFile(names, kDisplayNames, contents.displayNames, failures);
  AddIndexFile(files, kFiles, contents.files, failures);
  AddIndexFile(files, kPlatformFiles, contents.files, failures);
  return contents;
}

}  // namespace qm::analysis
