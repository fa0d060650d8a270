#include "msidb/ModuleFile.h"

#include "common/Path.h"

namespace qm::msidb {

namespace {

[[noreturn]] void ThrowOpenFailure(const common::WideString& longPath) {
  const DWORD code = ::GetLastError();
  const DWORD attributes = code == ERROR_ACCESS_DENIED ? ::GetFileAttributesW(longPath.c_str())
                                                       : INVALID_FILE_ATTRIBUTES;
  const bool isFolder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  throw FileError{code, isFolder ? L"The path is that of a folder." : L""};
}

}  // namespace

ModuleFile::ModuleFile(const common::WideString& path) : m_position(0) {
  const common::WideString longPath = common::ToExtendedPath(path);
  // Others may delete and rename the file: neither changes what is read here, and a build can
  // replace a module while its old file is open.
  m_file.Reset(::CreateFileW(longPath.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                             nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!m_file) {
    ThrowOpenFailure(longPath);
  }
  m_handle = m_file.Get();
  m_size = QuerySize();
}

ModuleFile::ModuleFile(HANDLE file) : m_handle(file), m_position(kUnknownPosition) {
  m_size = QuerySize();
}

// Two calls, because GetFileInformationByHandle also looks up the volume, which takes longer than
// everything else done with a small module.
ULONGLONG ModuleFile::QuerySize() const {
  LARGE_INTEGER size;
  if (!::GetFileSizeEx(m_handle, &size)) {
    throw FileError{::GetLastError(), {}};
  }
  return static_cast<ULONGLONG>(size.QuadPart);
}

FILETIME ModuleFile::QueryWriteTime() const {
  FILETIME time;
  if (!::GetFileTime(m_handle, nullptr, nullptr, &time)) {
    throw FileError{::GetLastError(), {}};
  }
  return time;
}

/// Returns the write time. Only the first call asks the system for it.
const FILETIME& ModuleFile::RememberWriteTime() {
  if (!m_writeTime) {
    m_writeTime = QueryWriteTime();
  }
  return *m_writeTime;
}

common::FileStamp ModuleFile::Stamp() { return {m_size, RememberWriteTime()}; }

// Most modules are small and are read by one call. They do not need the write time, which takes as
// long to query as the read itself. Uses the file pointer rather than an OVERLAPPED: Wine reports a
// read with an OVERLAPPED to its server, which takes as long as the read itself.
void ModuleFile::Read(std::uint64_t offset, void* bytes, std::size_t count) {
  if (count != m_size) {
    RememberWriteTime();
  }
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(offset);
  DWORD read = 0;
  const bool isInPlace = offset == m_position;
  m_position = kUnknownPosition;  // unknown if one of the calls below fails
  if ((!isInPlace && !::SetFilePointerEx(m_handle, place, nullptr, FILE_BEGIN)) ||
      !::ReadFile(m_handle, bytes, static_cast<DWORD>(count), &read, nullptr)) {
    throw FileError{::GetLastError(), {}};
  }
  m_position = offset + read;
  if (read != count) {
    throw FileError{ERROR_FILE_INVALID, L"The file became shorter while it was read."};
  }
}

void ModuleFile::RequireUnchanged() const {
  if (!m_writeTime) {
    return;
  }
  const FILETIME time = QueryWriteTime();  // a change of the size changes it too
  if (::CompareFileTime(&time, &*m_writeTime) != 0) {
    throw FileError{ERROR_FILE_INVALID, L"The file was written while it was read."};
  }
}

bool ModuleFile::IsCurrent(const common::WideString& path, const common::FileStamp& stamp) {
  WIN32_FILE_ATTRIBUTE_DATA found;
  return ::GetFileAttributesExW(common::ToExtendedPath(path).c_str(), GetFileExInfoStandard,
                                &found) &&
         common::FileStamp::From(found) == stamp;
}

}  // namespace qm::msidb
