#include "client/catalog/FolderTree.h"

#include <windows.h>

#include <algorithm>
#include <set>
#include <utility>

#include "client/catalog/FileIdentity.h"
#include "client/catalog/PathSpelling.h"
#include "client/catalog/SystemError.h"
#include "common/FolderFiles.h"
#include "common/Path.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

using qm::common::WideString;

constexpr int kDeepest = 64;
constexpr int kMostToLookAt = 200;

/// What a folder contains, without the folders below it.
struct FolderContents {
  bool hasModules = false;
  std::vector<std::wstring> subfolders;  ///< names, sorted ignoring case
  DWORD failure = ERROR_SUCCESS;         ///< a GetLastError() code if the folder cannot be listed
};

FolderContents ListFolder(const WideString& folder) {
  const qm::common::ScopedNoDiskPrompts noPrompts;
  FolderContents contents;
  WIN32_FIND_DATAW found;
  const WideString pattern = qm::common::JoinPath(qm::common::ToExtendedPath(folder), L"*");
  const qm::common::UniqueFindHandle find(::FindFirstFileExW(pattern.c_str(), FindExInfoBasic,
                                                             &found, FindExSearchNameMatch, nullptr,
                                                             FIND_FIRST_EX_LARGE_FETCH));
  if (find) {
    do {
      const std::wstring_view name = found.cFileName;
      if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
        contents.hasModules = contents.hasModules || qm::common::HasExtension(name, L".msm");
      } else if (name != L"." && name != L"..") {
        contents.subfolders.emplace_back(name);
      }
    } while (::FindNextFileW(find.Get(), &found));
  }
  const DWORD code = ::GetLastError();
  if (code != ERROR_NO_MORE_FILES && code != ERROR_FILE_NOT_FOUND) {
    contents.failure = code;
  }
  std::sort(contents.subfolders.begin(), contents.subfolders.end(),
            [](const std::wstring& a, const std::wstring& b) {
              return qm::text::CompareFolded(a, b) < 0;
            });
  return contents;
}

/// Identifies a folder whatever path leads to it: the serial number of the volume, and the number
/// of the folder on it.
using FolderIdentity = std::pair<DWORD, ULONGLONG>;

std::optional<FolderIdentity> IdentifyFolder(const WideString& folder) {
  const auto facts = QueryFile(folder);
  if (!facts) {
    return std::nullopt;
  }
  return FolderIdentity(facts->dwVolumeSerialNumber,
                        (ULONGLONG{facts->nFileIndexHigh} << 32U) | facts->nFileIndexLow);
}

/// Visits a folder and all folders below it, each once and before those below it.
class FolderWalk {
 public:
  explicit FolderWalk(const WideString& root) : m_pending{{root, 0}} {}

  /// Moves to the next folder. Returns false if there is none.
  bool Next() {
    while (!m_pending.empty()) {
      m_current = std::move(m_pending.back());
      m_pending.pop_back();
      const std::optional<FolderIdentity> identity = IdentifyFolder(m_current.path);
      if (identity && !m_visited.insert(*identity).second) {
        continue;
      }
      m_contents = {};
      if (!IsTooDeep()) {
        m_contents = ListFolder(m_current.path);
      }
      const auto& names = m_contents.subfolders;
      for (auto name = names.rbegin(); name != names.rend(); ++name) {
        m_pending.push_back({qm::common::JoinPath(m_current.path, *name), m_current.depth + 1});
      }
      return true;
    }
    return false;
  }

  const WideString& Path() const { return m_current.path; }
  bool IsTooDeep() const { return m_current.depth > kDeepest; }
  const FolderContents& Contents() const { return m_contents; }

 private:
  struct Folder {
    WideString path;
    int depth = 0;
  };

  std::vector<Folder> m_pending;
  Folder m_current;
  FolderContents m_contents;
  std::set<FolderIdentity> m_visited;
};

}  // namespace

ModuleFolders FindModuleFolders(const WideString& root) {
  ModuleFolders found;
  FolderWalk walk(root);
  while (walk.Next()) {
    const auto fail = [&](DWORD code, const std::string& reason) {
      found.failures.push_back({SpellPath(qm::text::ToUtf8(walk.Path())), "",
                                static_cast<HRESULT>(HRESULT_FROM_WIN32(code)), reason,
                                FailureOf::Folder});
    };
    if (walk.IsTooDeep()) {
      fail(ERROR_BAD_PATHNAME, "This folder is too many levels down; it was not searched.");
    } else if (const DWORD code = walk.Contents().failure; code != ERROR_SUCCESS) {
      fail(code, "The folder cannot be listed: " + FormatSystemError(code));
    } else if (walk.Contents().hasModules && !FitsSearchPath(walk.Path())) {
      fail(ERROR_BAD_PATHNAME,
           "A folder of the module search path must not contain a comma or a percent sign.");
    } else if (walk.Contents().hasModules) {
      found.folders.push_back(walk.Path());
    }
  }
  return found;
}

std::optional<WideString> FindModulesBelow(const WideString& root) {
  FolderWalk walk(root);
  walk.Next();
  for (int count = 0; count < kMostToLookAt && walk.Next(); ++count) {
    if (walk.Contents().hasModules) {
      return walk.Path();
    }
  }
  return std::nullopt;
}

bool FitsSearchPath(std::wstring_view folder) noexcept {
  return folder.find_first_of(L",%") == std::wstring_view::npos &&
         (folder.empty() || folder.back() != L' ');
}

}  // namespace mmcat
