#include "client/catalog/FileIdentity.h"

#include "client/catalog/PathSpelling.h"
#include "client/catalog/UserPath.h"
#include "common/Path.h"
#include "common/UniqueFile.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

using qm::common::WideString;

std::uint64_t Combine(DWORD high, DWORD low) noexcept { return (std::uint64_t{high} << 32U) | low; }

std::optional<FileIdentity> IdentifyExisting(const WideString& path) {
  const auto facts = QueryFile(path);
  if (!facts) {
    return std::nullopt;
  }
  return FileIdentity{
      facts->dwVolumeSerialNumber,
      Combine(facts->nFileIndexHigh, facts->nFileIndexLow),
      Combine(facts->nFileSizeHigh, facts->nFileSizeLow),
      Combine(facts->ftLastWriteTime.dwHighDateTime, facts->ftLastWriteTime.dwLowDateTime),
      {}};
}

}  // namespace

std::optional<BY_HANDLE_FILE_INFORMATION> QueryFile(const WideString& path) {
  const qm::common::UniqueFile file(
      ::CreateFileW(qm::common::ToExtendedPath(path).c_str(), 0,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION facts;
  return file && ::GetFileInformationByHandle(file.Get(), &facts) ? std::optional(facts)
                                                                  : std::nullopt;
}

std::optional<FileIdentity> IdentifyFile(const std::string& path) {
  const WideString full = qm::common::ResolveFullPath(ToSystemPath(path));
  std::optional<FileIdentity> identity = IdentifyExisting(full);
  if (identity) {
    return identity;
  }
  const WideString folder = qm::common::ParentFolder(full);
  identity = IdentifyExisting(folder);
  if (identity) {
    identity->missing = qm::text::FoldCase(GetFileName(qm::text::ToUtf8(full)));
  }
  return identity;
}

}  // namespace mmcat
