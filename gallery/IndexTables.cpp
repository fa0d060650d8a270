#include "gallery/IndexTables.h"

#include <optional>
#include <utility>

#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "common/DllLifetime.h"
#include "common/Path.h"
#include "common/ScopeGuard.h"
#include "gallery/IniAccess.h"

namespace {

/// Adds every line of a section of an index file to `table`. The last line with a given key wins.
void ReadIndex(const CWideString& folder, const wchar_t* file, const wchar_t* sectionName,
               CIniIndexes::Table& table) {
  if (folder.empty()) {
    return;  // the joined path would be relative to the current folder
  }
  const CComPtr<IIniReader> reader = CreateIniReader();
  if (FAILED(reader->Load(MakeBstr(JoinPath(folder, file)).Get()))) {
    ::SetErrorInfo(0, nullptr);  // a missing index is not a failure
    return;
  }
  const CComPtr<IIniSection> section = FindSection(*reader, sectionName);
  if (!section) {
    return;
  }
  const CComPtr<IIniKeys> keys = KeysOf(*section);
  const long count = CountOf(*keys);
  for (long position = 1; position <= count; ++position) {
    if (const CComPtr<IIniKey> key = FindKey(*keys, position)) {
      const CWideString name = NameOf(*key);
      table.insert_or_assign(name, ValueOf(*key));
    }
  }
}

}  // namespace

CIniIndexes& CIniIndexes::Instance() {
  static CModuleWide<CIniIndexes> indexes;
  return indexes.Get([] { return new CIniIndexes; });
}

void CIniIndexes::LoadOnce(IApplicationServices& services) {
  const CGatePass pass;
  if (std::exchange(m_bLoaded, true)) {
    return;
  }
  // Set on failure as well, which leaves the tables empty for good.
  const ScopeGuard completion([this]() noexcept { m_bComplete = true; });
  LoadModuleNames(AskServices(services, &IApplicationServices::get_ModuleIndexFolder));
  const CWideString fileIndexes = AskServices(services, &IApplicationServices::get_FileIndexFolder);
  LoadPlatformFileModules(fileIndexes);
  LoadFileModules(fileIndexes);
}

bool CIniIndexes::LookupModuleName(const CWideString& key, CWideString& name) const {
  std::optional<CGatePass> pass;
  if (!m_bComplete) {
    pass.emplace();
  }
  const auto found = m_moduleNames.find(key);
  if (found == m_moduleNames.end()) {
    return false;
  }
  name = found->second;
  return true;
}

void CIniIndexes::LoadModuleNames(const CWideString& folder) {
  ReadIndex(folder, L"modules.ini", L"modules", m_moduleNames);
}

void CIniIndexes::LoadFileModules(const CWideString& folder) {
  ReadIndex(folder, L"FilesToModules.ini", L"FilesToModules", m_fileModules);
}

void CIniIndexes::LoadPlatformFileModules(const CWideString& folder) {
  // The section is in the singular, unlike the file.
  ReadIndex(folder, L"PlatformFilesToModules.ini", L"PlatformFileToModule", m_platformFileModules);
}
