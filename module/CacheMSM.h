#pragma once

#include <map>
#include <memory>
#include <vector>

#include "com/error/com_exception.h"
#include "common/WideString.h"
#include "gallery/MMGallery.h"
#include "module/TableRows.h"

/// The module record: identity and summary texts, read by one of the Init functions, and the
/// module's tables. Each table is read once, at the first call of its accessor, even if that fails.
///
/// Apartments share records. After Init the texts no longer change. The tables are guarded by
/// LockOfTables until they are read. The recheck flag belongs to the catalog, which uses it behind
/// the ApartmentGate.
///
/// The module file is open only during a call. Failures are raised, see ReportInstallerResult; what
/// was read before a failure is kept.
class CCacheMSM : public CMMGallery {
 public:
  using NameList = std::vector<CWideString>;
  using DependencyMap = std::map<CWideString, DependencyRecord>;
  using ExclusionMap = std::map<CWideString, ExclusionRecord>;
  using FileMap = std::map<CWideString, FileRecord>;

  CCacheMSM() noexcept = default;
  ~CCacheMSM() override = default;

  /// Fills the record from the module database at the full path `path`. `origin` is the search
  /// folder in which it was found, or empty.
  void InitFromModule(const CWideString& path, const CWideString& origin);

  /// As InitFromModule, for scanning folders: does not raise failures of the file, and what cannot
  /// be read stays empty. If the signature cannot be read, the path is the display name and the
  /// first access to each table raises the failure. If only the summary cannot be read, the tables
  /// are still readable. Throws std::bad_alloc.
  void InitFromFoundModule(const CWideString& path, const CWideString& origin);

  /// Whether InitFromFoundModule could not read the signature or the summary.
  bool IsIncomplete() const noexcept { return m_bIncomplete; }

  /// Fills the record from the gallery description `name`.
  void InitFromGallery(const CWideString& name);

  /// Module key, "ID:language".
  const CWideString& Key() const noexcept { return m_strKey; }
  const CWideString& ModuleID() const noexcept { return m_strModuleID; }
  const CWideString& Path() const noexcept { return m_strPath; }
  const CWideString& Version() const noexcept { return m_strVersion; }
  const CWideString& Author() const noexcept { return m_strAuthor; }
  /// The package code, which is also the name of the module's gallery description.
  const CWideString& PackageCode() const noexcept { return m_strPackageCode; }
  const CWideString& Comments() const noexcept { return m_strComments; }
  const CWideString& Subject() const noexcept { return m_strSubject; }
  const CWideString& DisplayName() const noexcept { return m_strDisplayName; }
  long Language() const noexcept { return m_nLanguage; }
  const CWideString& GetOrigin() const noexcept { return m_strOrigin; }

  /// Dialog and custom action names, in row order.
  const NameList& GetDialogs();
  const NameList& GetCustomActions();

  /// Rows by module key. Of rows with the same key the last is kept. A dependency on this module
  /// itself, in the same version, is left out.
  const DependencyMap& GetDependencies();
  const ExclusionMap& GetExclusions();

  /// Rows by their File column.
  const FileMap& GetFiles();

  /// Whether the file must be checked for changes before the record is listed again.
  bool NeedsRecheck() const noexcept { return m_bRecheck; }
  void SetRecheck(bool recheck) noexcept { m_bRecheck = recheck; }

  /// Resolves a key of the module's Directory table to the path where files go; see
  /// msidb::RequireDirectoryPath. Reads the module at every call. Not called by the server.
  CWideString ResolveDirectory(const CWideString& key) const;

 private:
  /// Directory keys by component.
  using DirectoryMap = std::map<CWideString, CWideString>;

  /// The module's tables, each with a flag that is set once reading was attempted. Allocated
  /// separately, because most of the thousands of records are never asked for a table.
  struct Tables {
    NameList m_dialogs;
    bool m_bDialogsRead = false;
    NameList m_customActions;
    bool m_bCustomActionsRead = false;
    DependencyMap m_dependencies;
    bool m_bDependenciesRead = false;
    ExclusionMap m_exclusions;
    bool m_bExclusionsRead = false;
    FileMap m_files;
    bool m_bFilesRead = false;
  };

  /// Returns a table, which the first call reads with `load`. That call raises the kept failure if
  /// the signature could not be read.
  template <class List>
  const List& ReadOnce(List Tables::*list, bool Tables::*isRead, void (CCacheMSM::*load)());

  void ReadSignature(const msidb::ModuleDatabase& database);
  void ReadSummary(msidb::ModuleDatabase& database);
  void ResolveDisplayName();

  // Read one table each into m_pTables.
  void LoadDialogs();
  void LoadCustomActions();
  void LoadDependencies();
  void LoadExclusions();
  void LoadFiles();

  /// Maps every component to the key of its directory.
  static void LoadComponentDirectories(const msidb::ModuleDatabase& database, DirectoryMap& map);

  CWideString m_strKey;
  CWideString m_strModuleID;
  CWideString m_strPath;
  CWideString m_strVersion;
  CWideString m_strAuthor;
  CWideString m_strPackageCode;
  CWideString m_strComments;
  CWideString m_strSubject;
  CWideString m_strDisplayName;
  long m_nLanguage = 0;
  std::unique_ptr<Tables> m_pTables;
  bool m_bFromGallery = false;
  CWideString m_strOrigin;
  std::unique_ptr<const com_exception> m_pFailure;  ///< why the signature could not be read
  bool m_bIncomplete = false;
  bool m_bRecheck = false;
};
