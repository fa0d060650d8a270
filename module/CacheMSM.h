#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "com/error/com_exception.h"
#include "common/WideString.h"
#include "gallery/MMGallery.h"
#include "module/TableRows.h"

namespace qm::module {

/// The module record: identity and summary texts, read by one of the Init functions, and the
/// module's tables. Each table is read once, at the first call of its accessor, even if that fails.
///
/// Apartments share records. After Init the texts no longer change. TableLock guards the tables; a
/// table that has been read does not change. The recheck flag belongs to the catalog, which uses it
/// while owning the ApartmentGate.
///
/// The module file is open only during a call. Failures are raised, see ReportInstallerResult; what
/// was read before a failure is kept.
class CCacheMSM : public gallery::CMMGallery {
 public:
  using NameList = std::vector<common::WideString>;
  using DependencyMap = std::map<common::WideString, DependencyRow>;
  using ExclusionMap = std::map<common::WideString, ExclusionRow>;
  using FileMap = std::map<common::WideString, FileRow>;
  /// Reads a file that is open. May move its file pointer, and must not raise.
  using UseFile = std::function<void(HANDLE file)>;

  CCacheMSM() noexcept = default;
  ~CCacheMSM() override = default;

  /// Fills the record from the module database at the full path `path`. `origin` is the search
  /// folder in which it was found, or empty. `use`, unless null, is called with the open file once
  /// the record is filled. It is not called if the installer reads the file.
  void InitFromModule(const common::WideString& path, const common::WideString& origin,
                      const UseFile& use = nullptr);

  /// As InitFromModule, for scanning folders: does not raise failures of the file, and what cannot
  /// be read stays empty. If the signature cannot be read, the path is the display name and the
  /// first access to each table raises the failure. If only the summary cannot be read, the tables
  /// are still readable. Throws std::bad_alloc.
  void TryInitFromModule(const common::WideString& path, const common::WideString& origin,
                         const UseFile& use = nullptr);

  /// Returns whether TryInitFromModule could not read the signature or the summary.
  bool IsIncomplete() const noexcept { return m_bIncomplete; }

  /// Fills the record from the gallery description `name`.
  void InitFromGallery(const common::WideString& name);

  /// Module key, "ID:language".
  const common::WideString& Key() const noexcept { return m_strKey; }
  const common::WideString& ModuleID() const noexcept { return m_strModuleID; }
  const common::WideString& Path() const noexcept { return m_strPath; }
  const common::WideString& Version() const noexcept { return m_strVersion; }
  const common::WideString& Author() const noexcept { return m_strAuthor; }
  /// The package code, which is also the name of the module's gallery description.
  const common::WideString& PackageCode() const noexcept { return m_strPackageCode; }
  const common::WideString& Comments() const noexcept { return m_strComments; }
  const common::WideString& Subject() const noexcept { return m_strSubject; }
  const common::WideString& DisplayName() const noexcept { return m_strDisplayName; }
  long Language() const noexcept { return m_nLanguage; }
  const common::WideString& GetOrigin() const noexcept { return m_strOrigin; }

  /// Dialog and custom action names, in row order.
  const NameList& GetDialogs();
  const NameList& GetCustomActions();

  /// Rows by module key. Of rows with the same key the last is kept. A dependency on this module
  /// itself, in the same version, is left out.
  const DependencyMap& GetDependencies();
  const ExclusionMap& GetExclusions();

  /// Rows by their File column.
  const FileMap& GetFiles();

  /// Returns whether the file must be checked for changes before the record is listed again.
  bool IsRecheckPending() const noexcept { return m_bRecheck; }
  void SetRecheck(bool recheck) noexcept { m_bRecheck = recheck; }

  /// Resolves a key of the module's Directory table to the path where files go; see
  /// msidb::ResolveDirectoryPathOrRaise. Reads the module at every call. Not called by the server.
  common::WideString ResolveDirectory(const common::WideString& key) const;

 private:
  /// Directory keys by component.
  using DirectoryMap = std::map<common::WideString, common::WideString>;

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

  common::WideString m_strKey;
  common::WideString m_strModuleID;
  common::WideString m_strPath;
  common::WideString m_strVersion;
  common::WideString m_strAuthor;
  common::WideString m_strPackageCode;
  common::WideString m_strComments;
  common::WideString m_strSubject;
  common::WideString m_strDisplayName;
  long m_nLanguage = 0;
  std::unique_ptr<Tables> m_pTables;
  bool m_bFromGallery = false;
  common::WideString m_strOrigin;
  std::unique_ptr<const com_exception> m_pFailure;  ///< why the signature could not be read
  bool m_bIncomplete = false;
  bool m_bRecheck = false;
};

}  // namespace qm::module
