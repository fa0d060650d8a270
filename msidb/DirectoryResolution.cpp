#include "msidb/DirectoryResolution.h"

#include <set>

#include "msidb/DirectoryName.h"
#include "msidb/InstallerResult.h"
#include "msidb/PredefinedFolders.h"
#include "text/Fold.h"

namespace qm::msidb {

namespace {

bool BeginsWithDot(const common::WideString& name) noexcept {
  return !name.empty() && std::wstring_view(name).front() == L'.';
}

/// Returns whether a name fits into a path of MAX_PATH characters, terminator included. The walk
/// ends at one that does not.
bool FitsMaxPath(const common::WideString& name) noexcept { return name.length() < MAX_PATH; }

/// A walk up the Directory table that prepends the name of each row to the path.
class DirectoryWalk {
 public:
  DirectoryWalk(const DirectoryTable& table, const DirectoryOptions& options,
                common::WideString& path)
      : m_table(table), m_options(options), m_path(path) {}

  /// Adds one row to the path. Returns ERROR_MORE_DATA if a name or the walk is too long. Unless
  /// AtEnd(), the row of the parent comes next.
  UINT AddRow(const common::WideString& rowKey, const DirectoryRow& row) {
    m_atEnd = true;
    if (!FitsMaxPath(row.defaultDir) || !FitsMaxPath(rowKey)) {
      return ERROR_MORE_DATA;
    }
    if (!m_visited.insert(rowKey).second) {
      return ERROR_SUCCESS;
    }
    if (m_visited.size() > kMaxDirectoryRows || m_path.length() > kMaxPathLength) {
      return ERROR_MORE_DATA;
    }
    const common::WideString key = m_options.stripModuleSuffix ? StripModuleSuffix(rowKey) : rowKey;
    if (PredefinedRootMatch(m_table, key)) {
      if (m_options.brackets) {
        m_path = FormatReference(key) + m_path;  // the value of the property ends in a backslash
      } else {
        PrependFolder(key);
      }
      return ERROR_SUCCESS;
    }
    return AddOrdinaryFolder(row, key);
  }

  bool AtEnd() const noexcept { return m_atEnd; }

 private:
  /// Adds a row that is not a predefined folder.
  UINT AddOrdinaryFolder(const DirectoryRow& row, const common::WideString& key) {
    common::WideString name =
        SplitDefaultDir(row.defaultDir, {m_options.useSourcePart, m_options.useShortName});
    if (text::CompareFolded(name, L"SOURCEDIR") == 0) {
      if (!LookupProperty(m_table, key, name)) {
        return ERROR_SUCCESS;
      }
      m_fromProperty = true;
    }
    if (BeginsWithDot(name)) {
      if (m_options.resolveDotFolders && !m_options.useSourcePart) {
        return AddDotFolder(row, key);
      }
      name = FormatReference(key);
    }
    PrependFolder(name);
    m_atEnd = m_fromProperty;
    return ERROR_SUCCESS;
  }

  /// A "." folder is the same folder as its parent. Directly below TARGETDIR the walk ends, with
  /// the value of the property of that key if there is one.
  UINT AddDotFolder(const DirectoryRow& row, const common::WideString& key) {
    if (!FitsMaxPath(row.parent)) {
      return ERROR_MORE_DATA;
    }
    m_atEnd = text::CompareFolded(row.parent, L"TARGETDIR") == 0;
    common::WideString value;
    if (m_atEnd && LookupProperty(m_table, key, value)) {
      m_path = value + m_path;
    }
    return ERROR_SUCCESS;
  }

  /// Formats a key that stands for a folder name.
  common::WideString FormatReference(const common::WideString& key) const {
    if (!m_options.brackets) {
      return key;
    }
    const auto [open, close] = *m_options.brackets;
    return common::WideString(&open, 1) + key + common::WideString(&close, 1);
  }

  void PrependFolder(const common::WideString& name) {
    m_path = m_path.empty() ? name : name + L"\\" + m_path;
  }

  const DirectoryTable& m_table;
  const DirectoryOptions& m_options;
  common::WideString& m_path;
  std::set<common::WideString> m_visited;
  /// Whether a property supplied a folder name. The walk then ends with the next name prepended.
  bool m_fromProperty = false;
  bool m_atEnd = false;
};

}  // namespace

UINT ResolveDirectoryPath(const DirectoryTable& table, const common::WideString& key,
                          common::WideString& path, const DirectoryOptions& options) {
  path.clear();
  DirectoryWalk walk(table, options, path);
  common::WideString current = key;
  while (const DirectoryRow* const row = table.Find(current)) {
    const UINT code = walk.AddRow(current, *row);
    if (code != ERROR_SUCCESS || walk.AtEnd()) {
      return code;
    }
    current = row->parent;
  }
  return ERROR_SUCCESS;
}

common::WideString ResolveDirectoryPathOrRaise(const DirectoryTable& table,
                                               const common::WideString& key,
                                               const DirectoryOptions& options) {
  common::WideString path;
  if (const UINT code = ResolveDirectoryPath(table, key, path, options)) {
    RaiseFileFailure(code, {}, L"ResolveDirectoryPath", key.c_str());
  }
  return path;
}

DirectoryPaths ResolveAllDirectories(const DirectoryTable& table, const DirectoryOptions& options) {
  DirectoryPaths paths;
  for (const common::WideString& key : table.Keys()) {
    paths.insert_or_assign(key, ResolveDirectoryPathOrRaise(table, key, options));
  }
  return paths;
}

bool PredefinedRootMatch(const DirectoryTable& table, const common::WideString& key) {
  const DirectoryRow* const row = table.Find(key);
  if (!row) {
    return false;
  }
  if (!row->isPredefined) {
    std::wstring upper(key);
    ::CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    row->isPredefined = FindPredefinedFolder(upper) != nullptr;
  }
  return *row->isPredefined;
}

bool LookupProperty(const DirectoryTable& table, const common::WideString& name,
                    common::WideString& value) {
  const common::WideString* const found = table.FindProperty(name);
  if (found) {
    value = *found;
  }
  return found != nullptr;
}

}  // namespace qm::msidb
