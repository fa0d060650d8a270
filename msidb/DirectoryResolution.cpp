#include "msidb/DirectoryResolution.h"

#include <set>

#include "common/IgnoringCase.h"
#include "msidb/DirectoryName.h"
#include "msidb/InstallerResult.h"
#include "msidb/PredefinedFolders.h"
#include "msidb/View.h"

namespace msidb {

namespace {

bool BeginsWithDot(const CWideString& name) noexcept {
  return !name.empty() && std::wstring_view(name).front() == L'.';
}

/// The text of a field that fits into a path.
UINT ReadName(const Record& row, UINT field, CWideString& name) {
  wchar_t buffer[MAX_PATH];
  DWORD length = MAX_PATH;
  const UINT code = ::MsiRecordGetStringW(row.Get(), field, buffer, &length);
  if (code == ERROR_SUCCESS) {
    name = CWideString(buffer);
  }
  return code;
}

/// Fetches the first row that `query` finds for `name`, which stands for its "%s"; false when there
/// is none. The installer's SQL has no escape for an apostrophe, so a name that holds one is in no
/// query and has no row.
bool FetchByName(View& view, const Database& database, const wchar_t* query,
                 const CWideString& name) {
  const bool canBeQuoted = std::wstring_view(name).find(L'\'') == std::wstring_view::npos;
  return canBeQuoted && view.RunAndFetch(database, CWideString::Format(query, name.c_str()));
}

/// A walk up the Directory table: takes its rows one by one and puts their names before the path.
class DirectoryWalk {
 public:
  DirectoryWalk(const Database& database, const DirectoryOptions& options, CWideString& path)
      : m_database(database), m_options(options), m_path(path) {}

  /// Takes a row (Directory_Parent, DefaultDir, Directory); a name that is too long is returned as
  /// the installer's code. AtEnd() tells whether to go on with the row of the parent.
  UINT Take(const Record& row) {
    m_atEnd = true;
    CWideString defaultDir;
    CWideString key;
    UINT code = ReadName(row, 2, defaultDir);
    if (code == ERROR_SUCCESS) {
      code = ReadName(row, 3, key);
    }
    if (code != ERROR_SUCCESS || !m_visited.insert(key).second) {
      return code;
    }
    if (m_options.stripModuleSuffix) {
      key = StripModuleSuffix(key);
    }
    if (PredefinedRootMatch(m_database, key)) {
      Prepend(Reference(key), m_options.brackets.has_value());
      return code;
    }
    return TakeOwnFolder(row, defaultDir, key);
  }

  bool AtEnd() const noexcept { return m_atEnd; }

 private:
  /// A row that is no predefined folder.
  UINT TakeOwnFolder(const Record& row, const CWideString& defaultDir, const CWideString& key) {
    CWideString name = SplitDefaultDir(defaultDir, m_options.useSourcePart, m_options.useShortName);
    const bool isRoot = EqualsIgnoringCase(name, L"SOURCEDIR");
    if (isRoot && !LookupProperty(m_database, key, name)) {
      return ERROR_SUCCESS;
    }
    if (BeginsWithDot(name)) {
      if (m_options.resolveDotFolders && !m_options.useSourcePart) {
        return TakeDotFolder(row, key);
      }
      name = Reference(key);
    }
    Prepend(name, false);
    m_atEnd = isRoot;
    return ERROR_SUCCESS;
  }

  /// A "." folder is that of its parent; below TARGETDIR, the one that a property names.
  UINT TakeDotFolder(const Record& row, const CWideString& key) {
    CWideString parent;
    const UINT code = ReadName(row, 1, parent);
    if (code == ERROR_SUCCESS) {
      m_atEnd = EqualsIgnoringCase(parent, L"TARGETDIR");
      CWideString value;
      if (m_atEnd && LookupProperty(m_database, key, value)) {
        m_path = value + m_path;
      }
    }
    return code;
  }

  /// A key in place of a name.
  CWideString Reference(const CWideString& key) const {
    if (!m_options.brackets) {
      return key;
    }
    const auto [open, close] = *m_options.brackets;
    return CWideString(&open, 1) + key + CWideString(&close, 1);
  }

  /// A property reference ends in a backslash when it is filled in, so none follows it.
  void Prepend(const CWideString& name, bool isPropertyReference) {
    CWideString path = name;
    if (!m_path.empty() && !isPropertyReference) {
      path += L"\\";
    }
    path += m_path;
    m_path = std::move(path);
  }

  const Database& m_database;
  const DirectoryOptions& m_options;
  CWideString& m_path;
  std::set<CWideString> m_visited;
  bool m_atEnd = false;
};

}  // namespace

UINT ResolveDirectoryPath(const Database& database, const CWideString& key, CWideString& path,
                          const DirectoryOptions& options) {
  path.clear();
  const Record start{CMsiHandle(::MsiCreateRecord(1))};
  if (!start) {
    return ERROR_CREATE_FAILED;
  }
  UINT code = ::MsiRecordSetStringW(start.Get(), 1, key.c_str());
  if (code != ERROR_SUCCESS) {
    return code;
  }
  if (!database.HasTable(L"Directory")) {
    return ERROR_SUCCESS;
  }
  View view;
  code = view.TryOpen(database,
                      L"SELECT `Directory_Parent`,`DefaultDir`, `Directory` FROM `Directory` "
                      L"WHERE `Directory`.`Directory`=?");
  if (code != ERROR_SUCCESS) {
    return code;
  }

  // A row is the parameter of the next execution: its first field, which "?" takes, is the parent.
  DirectoryWalk walk(database, options, path);
  view.Execute(&start);
  while (code == ERROR_SUCCESS && view.Next()) {
    code = walk.Take(view.Row());
    if (walk.AtEnd()) {
      break;
    }
    view.Close();
    view.Execute(&view.Row());
  }
  return code;
}

CWideString RequireDirectoryPath(const Database& database, const CWideString& key,
                                 const DirectoryOptions& options) {
  CWideString path;
  ReportInstallerResult(ResolveDirectoryPath(database, key, path, options), L"ResolveDirectoryPath",
                        key.c_str());
  return path;
}

DirectoryPaths ResolveAllDirectories(const Database& database, const DirectoryOptions& options) {
  DirectoryPaths paths;
  if (database.HasTable(L"Directory")) {
    View view;
    view.RunTable(database, L"Directory");
    while (view.Next()) {
      const CWideString key = view.Row().GetString(1);
      paths.insert_or_assign(key, RequireDirectoryPath(database, key, options));
    }
  }
  return paths;
}

bool PredefinedRootMatch(const Database& database, const CWideString& key) {
  std::wstring upper(key);
  ::CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
  // The table of folders is asked first: it answers without a query for nearly every row of a walk.
  if (!FindPredefinedRoot(CWideString(std::move(upper)))) {
    return false;
  }
  View view;
  return FetchByName(view, database,
                     L"SELECT `Directory_Parent` FROM `Directory` WHERE `Directory` = '%s'", key);
}

bool LookupProperty(const Database& database, const CWideString& name, CWideString& value) {
  if (!database.HasTable(L"Property")) {
    return false;
  }
  View view;
  const bool found =
      FetchByName(view, database, L"SELECT * FROM `Property` WHERE `Property` = '%s'", name);
  if (found) {
    value = view.Row().GetString(2);
  }
  return found;
}

}  // namespace msidb
