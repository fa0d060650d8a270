#include "gallery/IndexTables.h"

#include <optional>
#include <utility>

#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "common/DllLifetime.h"
#include "common/Path.h"
#include "common/ScopeGuard.h"
#include "gallery/IniAccess.h"

namespace qm::gallery {

namespace {

/// Adds every line of a section of an index file to `table`. The last line with a given key wins.
void ReadIndexFile(const common::WideString& folder, const wchar_t* file,
                   const wchar_t* sectionName, IndexTables::Table& table) {
  if (folder.empty()) {
    return;  // the joined path would be relative to the current folder
  }
  const common::ComPtr<IIniReader> reader = CreateIniReader();
  if (FAILED(reader->Load(com::AllocateBstr(common::JoinPath(folder, file)).Get()))) {
    ::SetErrorInfo(0, nullptr);  // a missing index is not a failure
    return;
  }
  ForEachLine(*reader, sectionName,
              [&](const common::WideString& name, const common::WideString& value) {
                table.insert_or_assign(name, value);
              });
}

}  // namespace

IndexTables& IndexTables::Instance() {
  static common::DllWide<IndexTables> indexes;
  return indexes.Get([] { return new IndexTables; });
}

void IndexTables::LoadOnce(IApplicationServices& services) {
  const com::ScopedGateEntry pass;
  if (std::exchange(m_loadStarted, true)) {
    return;
  }
  // Set on failure as well, which leaves the tables empty for good.
  const common::ScopeGuard completion([this]() noexcept { m_loadFinished = true; });
  LoadModuleNames(GetServiceText(services, &IApplicationServices::get_ModuleIndexFolder));
  const common::WideString fileIndexes =
      GetServiceText(services, &IApplicationServices::get_FileIndexFolder);
  LoadPlatformFileModules(fileIndexes);
  LoadFileModules(fileIndexes);
}

bool IndexTables::LookupModuleName(const common::WideString& key, common::WideString& name) const {
  std::optional<com::ScopedGateEntry> pass;
  if (!m_loadFinished) {
    pass.emplace();
  }
  const auto found = m_moduleNames.find(key);
  if (found == m_moduleNames.end()) {
    return false;
  }
  name = found->second;
  return true;
}

void IndexTables::LoadModuleNames(const common::WideString& folder) {
  ReadIndexFile(folder, L"modules.ini", L"modules", m_moduleNames);
}

void IndexTables::LoadFileModules(const common::WideString& folder) {
  ReadIndexFile(folder, L"FilesToModules.ini", L"FilesToModules", m_fileModules);
}

void IndexTables::LoadPlatformFileModules(const common::WideString& folder) {
  // The section is in the singular, unlike the file.
  ReadIndexFile(folder, L"PlatformFilesToModules.ini", L"PlatformFileToModule",
                m_platformFileModules);
}

}  // namespace qm::gallery
