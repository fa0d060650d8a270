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

namespace qm::module {

namespace {

/// Calls `use` for every row of `table`, sorted by the column `orderBy` unless that is null. A
/// missing table has no rows.
template <class Use>
void ForEachRow(const msidb::ModuleDatabase& database, const wchar_t* table, const wchar_t* orderBy,
                Use use) {
  if (!database.HasTable(table)) {
    return;
  }
  const auto rows = database.ReadTable(table, orderBy);
  while (rows->Next()) {
    use(*rows);
  }
}

/// The same for the module at `path`, in the table's own order. The caller holds TableLock.
template <class Use>
void ForEachRow(const common::WideString& path, const wchar_t* table, Use use) {
  ForEachRow(*OpenForReadingTables(path), table, nullptr, use);
}

void ReadNames(const common::WideString& path, const wchar_t* table, CCacheMSM::NameList& names) {
  ForEachRow(path, table, [&](const msidb::RowCursor& row) { names.push_back(row.GetString(1)); });
}

}  // namespace

void CCacheMSM::InitFromModule(const common::WideString& path, const common::WideString& origin,
                               const UseFile& use) {
  m_strPath = path;
  m_strOrigin = origin;
  const auto database = msidb::ModuleDatabase::Open(path);
  ReadSignature(*database);
  ReadSummary(*database);
  ResolveDisplayName();
  if (HANDLE file = database->OpenFile(); use && file) {
    use(file);
  }
}

void CCacheMSM::TryInitFromModule(const common::WideString& path, const common::WideString& origin,
                                  const UseFile& use) {
  auto failure = com::CaptureFailure([&] { InitFromModule(path, origin, use); });
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
  const common::ExclusiveLock lock(TableLock());
  if (!m_pTables) {
    m_pTables = std::make_unique<Tables>();
  }
  Tables& tables = *m_pTables;
  if (!std::exchange(tables.*isRead, true)) {
    if (m_pFailure) {
      com::Raise(*m_pFailure);
    }
    (this->*load)();
  }
  return tables.*list;
}

void CCacheMSM::InitFromGallery(const common::WideString& name) {
  m_bFromGallery = true;
  SetNameAndVersion(name, common::WideString());
  m_strPath = ResolveLocalPath();
  m_nLanguage = GetLanguage();
  m_strModuleID = GetModuleID();
  m_strVersion = GetVersion();
  m_strKey = common::MakeModuleKey(m_strModuleID, m_nLanguage);
  m_strAuthor = GetAuthor();
  m_strComments = GetComments();
  m_strPackageCode = Name();
  m_strSubject = GetSubject();
  ResolveDisplayName();
}

void CCacheMSM::ReadSignature(const msidb::ModuleDatabase& database) {
  const auto rows = database.ReadTable(L"ModuleSignature");
  if (rows->Next()) {
    rows->RequireFields(3, L"ModuleSignature");
    const int language = rows->GetInteger(2);
    const common::WideString id = rows->GetString(1);
    m_strVersion = rows->GetString(3);
    m_nLanguage = language;
    m_strModuleID = id;
  }
  m_strKey = common::MakeModuleKey(m_strModuleID, m_nLanguage);
}

void CCacheMSM::ReadSummary(msidb::ModuleDatabase& database) {
  m_strAuthor = database.ReadSummaryString(PID_AUTHOR);
  m_strComments = database.ReadSummaryString(PID_COMMENTS);
  m_strPackageCode = database.ReadSummaryString(PID_REVNUMBER);
  m_strSubject = database.ReadSummaryString(PID_SUBJECT);
  SetNameAndVersion(m_strPackageCode, m_strVersion);
}

void CCacheMSM::ResolveDisplayName() {
  if (!gallery::IndexTables::Instance().LookupModuleName(m_strKey, m_strDisplayName)) {
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

common::WideString CCacheMSM::ResolveDirectory(const common::WideString& key) const {
  const auto database = msidb::ModuleDatabase::Open(m_strPath);
  return msidb::ResolveDirectoryPathOrRaise(msidb::DirectoryTable(*database), key,
                                            traits::MakeTargetPathOptions());
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
  ForEachRow(m_strPath, L"ModuleDependency", [&](const msidb::RowCursor& row) {
    row.RequireFields(5, L"ModuleDependency");
    DependencyRow dependency(row);
    const bool itself = dependency.RequiredID == m_strModuleID &&
                        dependency.RequiredLanguage == m_nLanguage &&
                        dependency.RequiredVersion == m_strVersion;
    if (!itself) {
      const common::WideString key = dependency.Key;
      m_pTables->m_dependencies.insert_or_assign(key, std::move(dependency));
    }
  });
}

void CCacheMSM::LoadExclusions() {
  if (m_bFromGallery) {
    return;
  }
  ForEachRow(m_strPath, L"ModuleExclusion", [&](const msidb::RowCursor& row) {
    row.RequireFields(6, L"ModuleExclusion");
    ExclusionRow exclusion(row);
    const common::WideString key = exclusion.Key;
    m_pTables->m_exclusions.insert_or_assign(key, std::move(exclusion));
  });
}

void CCacheMSM::LoadFiles() {
  if (m_bFromGallery) {
    return;
  }
  const auto database = OpenForReadingTables(m_strPath);
  DirectoryMap directories;
  LoadComponentDirectories(*database, directories);
  ForEachRow(*database, L"File", L"Sequence", [&](const msidb::RowCursor& row) {
    row.RequireFields(8, L"File");
    const auto component = directories.find(row.GetString(2));
    FileRow file(row, component == directories.end() ? common::WideString() : component->second);
    const common::WideString key = file.File;
    m_pTables->m_files.insert_or_assign(key, std::move(file));
  });
}

void CCacheMSM::LoadComponentDirectories(const msidb::ModuleDatabase& database, DirectoryMap& map) {
  ForEachRow(database, L"Component", L"Component", [&](const msidb::RowCursor& row) {
    row.RequireFields(3, L"Component");
    map[row.GetString(1)] = row.GetString(3);
  });
}

}  // namespace qm::module
