#pragma once

#include <map>
#include <memory>
#include <vector>

#include "com/error/com_exception.h"
#include "common/WideString.h"
#include "gallery/MMGallery.h"
#include "module/RowRecords.h"

/// The description of one merge module in memory: identity and summary texts, read by
/// InitFromModule, and the module's tables, each read once, when its accessor is first called, even
/// if that fails.
///
/// The module file is open only while a call runs. Failures are raised, see ReportInstallerResult;
/// what was read before a failure stays.
class CCacheMSM : public CMMGallery {
 public:
  using NameList = std::vector<CWideString>;
  using DependencyMap = std::map<CWideString, DependencyRecord>;
  using ExclusionMap = std::map<CWideString, ExclusionRecord>;
  using FileMap = std::map<CWideString, FileRecord>;

  CCacheMSM() noexcept = default;
  ~CCacheMSM() override = default;

  /// Fills the record from the module database at the full path `path`. `origin` says where it
  /// was found.
  void InitFromModule(const CWideString& path, const CWideString& origin);

  /// As InitFromModule, for a scan that one file must not stop: what cannot be read stays empty.
  /// Without a signature the path is the display name, and the first access to each table raises
  /// the failure; a summary that alone cannot be read leaves the tables readable. Only a shortage
  /// of memory is thrown.
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
  /// Package code: also the name by which the gallery describes the module.
  const CWideString& PackageCode() const noexcept { return m_strPackageCode; }
  const CWideString& Comments() const noexcept { return m_strComments; }
  const CWideString& Subject() const noexcept { return m_strSubject; }
  const CWideString& DisplayName() const noexcept { return m_strDisplayName; }
  long Language() const noexcept { return m_nLanguage; }
  const CWideString& GetOrigin() const noexcept { return m_strOrigin; }

  /// Dialog and custom action names, in row order.
  const NameList& GetDialogs();
  const NameList& GetCustomActions();

  /// Rows by module key; of rows with one key the last stays. A dependency that names this module
  /// itself, version included, is left out.
  const DependencyMap& GetDependencies();
  const ExclusionMap& GetExclusions();

  /// Rows by their File column.
  const FileMap& GetFiles();

  /// Whether the module's file has to be compared with what was read before the record is listed
  /// again.
  bool NeedsRecheck() const noexcept { return m_bRecheck; }
  void SetRecheck(bool recheck) noexcept { m_bRecheck = recheck; }

  /// The path of a key of the module's Directory table, for showing where files go; see
  /// msidb::RequireDirectoryPath. Nothing is kept. No caller in the server.
  CWideString ResolveDirectory(const CWideString& key) const;

 private:
  /// Directory keys by the component that lies in them.
  using DirectoryMap = std::map<CWideString, CWideString>;

  /// The module's tables, each with the flag that says that it was read, if only in vain. They lie
  /// outside the record, which is one of thousands and mostly never asked for one of them.
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

  /// A table, which `load` reads at the first call. That call raises the kept failure of a file
  /// that could not be read.
  template <class List>
  const List& ReadOnce(List Tables::*list, bool Tables::*isRead, void (CCacheMSM::*load)());

  void ReadSignature(const msidb::ModuleDatabase& database);
  void ReadSummary(msidb::ModuleDatabase& database);
  void ResolveDisplayName();

  // Each reads one table into m_pTables.
  void LoadDialogs();
  void LoadCustomActions();
  void LoadDependencies();
  void LoadExclusions();
  void LoadFiles();

  /// Sets the entry of every component to the key of its directory.
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
  std::unique_ptr<const com_exception> m_pFailure;  ///< why there is no signature
  bool m_bIncomplete = false;
  bool m_bRecheck = false;
};
