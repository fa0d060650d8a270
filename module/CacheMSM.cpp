#include "module/CacheMSM.h"

#include <msidefs.h>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "common/ExclusiveLock.h"
#include "common/ModuleKey.h"
#include "gallery/IndexTables.h"
#include "module/TableCache.h"
#include "msidb/DirectoryResolution.h"
#include "msidb/ModuleDatabase.h"
#include "traits/TargetPath.h"

using msidb::ModuleDatabase;
using msidb::TableRows;

namespace {

/// Calls `use` for every row of `table`, sorted by the column `orderBy` unless that is null. A
/// missing table has no rows.
template <class Use>
void ForEachRow(const ModuleDatabase& database, const wchar_t* table, const wchar_t* orderBy,
                Use use) {
  if (!database.HasTable(table)) {
    return;
  }
  const auto rows = database.ReadTable(table, orderBy);
  while (rows->Next()) {
    use(*rows);
  }
}

/// The same for the module at `path`, in the table's own order. The caller holds LockOfTables.
template <class Use>
void ForEachRow(const CWideString& path, const wchar_t* table, Use use) {
  ForEachRow(*OpenForTables(path), table, nullptr, use);
}

void ReadNames(const CWideString& path, const wchar_t* table, CCacheMSM::NameList& names) {
  ForEachRow(path, table, [&](const TableRows& row) { names.push_back(row.GetString(1)); });
}

}  // namespace

void CCacheMSM::InitFromModule(const CWideString& path, const CWideString& origin) {
  m_strPath = path;
  m_strOrigin = origin;
  const auto database = ModuleDatabase::Open(path);
  ReadSignature(*database);
  ReadSummary(*database);
  ResolveDisplayName();
}

void CCacheMSM::InitFromFoundModule(const CWideString& path, const CWideString& origin) {
  auto failure = KeepFailure([&] { InitFromModule(path, origin); });
  if (!failure) {
    return;
  }
  m_bIncomplete = true;
  // A key means that the signature was read, so only the summary failed.
  if (m_strKey.empty()) {
    m_pFailure = std::move(failure);
  }
  ResolveDisplayName();
}

template <class List>
const List& CCacheMSM::ReadOnce(List Tables::*list, bool Tables::*isRead,
                                void (CCacheMSM::*load)()) {
  const CExclusiveLock lock(LockOfTables());
  if (!m_pTables) {
    m_pTables = std::make_unique<Tables>();
  }
  Tables& tables = *m_pTables;
  if (!std::exchange(tables.*isRead, true)) {
    if (m_pFailure) {
      Raise(*m_pFailure);
    }
    (this->*load)();
  }
  return tables.*list;
}

void CCacheMSM::InitFromGallery(const CWideString& name) {
  m_bFromGallery = true;
  SetNameAndVersion(name, CWideString());
  m_strPath = ResolveLocalPath();
  m_nLanguage = GetLanguage();
  m_strModuleID = GetModuleID();
  m_strVersion = GetVersion();
  m_strKey = MakeModuleKey(m_strModuleID, m_nLanguage);
  m_strAuthor = GetAuthor();
  m_strComments = GetComments();
  m_strPackageCode = Name();
  m_strSubject = GetSubject();
  ResolveDisplayName();
}

void CCacheMSM::ReadSignature(const ModuleDatabase& database) {
  const auto rows = database.ReadTable(L"ModuleSignature");
  if (rows->Next()) {
    rows->RequireFields(3, L"ModuleSignature");
    const int language = rows->GetInteger(2);
    const CWideString id = rows->GetString(1);
    m_strVersion = rows->GetString(3);
    m_nLanguage = language;
    m_strModuleID = id;
  }
  m_strKey = MakeModuleKey(m_strModuleID, m_nLanguage);
}

void CCacheMSM::ReadSummary(ModuleDatabase& database) {
  m_strAuthor = database.ReadSummaryString(PID_AUTHOR);
  m_strComments = database.ReadSummaryString(PID_COMMENTS);
  m_strPackageCode = database.ReadSummaryString(PID_REVNUMBER);
  m_strSubject = database.ReadSummaryString(PID_SUBJECT);
  SetNameAndVersion(m_strPackageCode, m_strVersion);
}

void CCacheMSM::ResolveDisplayName() {
  if (!CIniIndexes::Instance().LookupModuleName(m_strKey, m_strDisplayName)) {
    m_strDisplayName = m_strSubject.empty() ? m_strPath : m_strSubject;
  }
}

const CCacheMSM::NameList& CCacheMSM::GetDialogs() {
  return ReadOnce(&Tables::m_dialogs, &Tables::m_bDialogsRead, &CCacheMSM::LoadDialogs);
}

const CCacheMSM::NameList& CCacheMSM::GetCustomActions() {
  return ReadOnce(&Tables::m_customActions, &Tables::m_bCustomActionsRead,
                  &CCacheMSM::LoadCustomActions);
}

const CCacheMSM::DependencyMap& CCacheMSM::GetDependencies() {
  return ReadOnce(&Tables::m_dependencies, &Tables::m_bDependenciesRead,
                  &CCacheMSM::LoadDependencies);
}

const CCacheMSM::ExclusionMap& CCacheMSM::GetExclusions() {
  return ReadOnce(&Tables::m_exclusions, &Tables::m_bExclusionsRead, &CCacheMSM::LoadExclusions);
}

const CCacheMSM::FileMap& CCacheMSM::GetFiles() {
  return ReadOnce(&Tables::m_files, &Tables::m_bFilesRead, &CCacheMSM::LoadFiles);
}

CWideString CCacheMSM::ResolveDirectory(const CWideString& key) const {
  const auto database = ModuleDatabase::Open(m_strPath);
  return msidb::RequireDirectoryPath(msidb::DirectoryTable(*database), key, TargetPathOptions());
}

void CCacheMSM::LoadDialogs() {
  if (m_bFromGallery) {
    return;
  }
  ReadNames(m_strPath, L"Dialog", m_pTables->m_dialogs);
}

void CCacheMSM::LoadCustomActions() {
  if (m_bFromGallery) {
    return;
  }
  ReadNames(m_strPath, L"CustomAction", m_pTables->m_customActions);
}

void CCacheMSM::LoadDependencies() {
  if (m_bFromGallery) {
    return;
  }
  ForEachRow(m_strPath, L"ModuleDependency", [&](const TableRows& row) {
    row.RequireFields(5, L"ModuleDependency");
    DependencyRecord dependency(row);
    const bool itself = dependency.RequiredID == m_strModuleID &&
                        dependency.RequiredLanguage == m_nLanguage &&
                        dependency.RequiredVersion == m_strVersion;
    if (!itself) {
      const CWideString key = dependency.Key;
      m_pTables->m_dependencies.insert_or_assign(key, std::move(dependency));
    }
  });
}

void CCacheMSM::LoadExclusions() {
  if (m_bFromGallery) {
    return;
  }
  ForEachRow(m_strPath, L"ModuleExclusion", [&](const TableRows& row) {
    row.RequireFields(6, L"ModuleExclusion");
    ExclusionRecord exclusion(row);
    const CWideString key = exclusion.Key;
    m_pTables->m_exclusions.insert_or_assign(key, std::move(exclusion));
  });
}

void CCacheMSM::LoadFiles() {
  if (m_bFromGallery) {
    return;
  }
  const auto database = OpenForTables(m_strPath);
  DirectoryMap directories;
  LoadComponentDirectories(*database, directories);
  ForEachRow(*database, L"File", L"Sequence", [&](const TableRows& row) {
    row.RequireFields(8, L"File");
    const auto component = directories.find(row.GetString(2));
    FileRecord file(row, component == directories.end() ? CWideString() : component->second);
    const CWideString key = file.File;
    m_pTables->m_files.insert_or_assign(key, std::move(file));
  });
}

void CCacheMSM::LoadComponentDirectories(const ModuleDatabase& database, DirectoryMap& map) {
  ForEachRow(database, L"Component", L"Component", [&](const TableRows& row) {
    row.RequireFields(3, L"Component");
    map[row.GetString(1)] = row.GetString(3);
  });
}
