#include "client/catalog/TextFile.h"

#include <windows.h>
// Needs the types of windows.h.
#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/SystemError.h"
#include "common/Path.h"
#include "common/UniqueFile.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

struct FileCloser {
  void operator()(FILE* file) const noexcept { std::fclose(file); }
};
using UniqueStream = std::unique_ptr<FILE, FileCloser>;
using qm::common::WideString;

/// The file or device that writing to a path changes.
struct Target {
  explicit Target(const std::string& userPath);

  WideString path;
  DWORD error = ERROR_SUCCESS;  ///< why it cannot be opened: ERROR_FILE_NOT_FOUND if it is new
  bool isDevice = false;
};

Target::Target(const std::string& userPath) : path(ToSystemPath(userPath)) {
  const qm::common::UniqueFile file(::CreateFileW(
      path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    error = ::GetLastError();
    return;
  }
  isDevice = ::GetFileType(file.Get()) != FILE_TYPE_DISK;
  // Follows a link, so that its target is replaced and not the link.
  wchar_t real[1024];
  const DWORD size =
      ::GetFinalPathNameByHandleW(file.Get(), real, std::size(real), FILE_NAME_NORMALIZED);
  if (!isDevice && size > 0 && size < std::size(real)) {
    path = real;
  }
}

/// Makes a name for a new file beside `file` that no other process uses.
WideString MakeFreshName(const WideString& file) {
  return file + L"." + std::to_wstring(::GetCurrentProcessId()).c_str() + L".new";
}

/// Throws if the target exists and must not be written: it is a folder, is read-only, or cannot be
/// opened. A replacement would get around the permissions of the file.
void RequireWritableTarget(const Target& target) {
  const DWORD attributes = ::GetFileAttributesW(target.path.c_str());
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (exists && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    throw std::runtime_error("this is a folder");
  }
  if (exists && !target.isDevice && (attributes & FILE_ATTRIBUTE_READONLY)) {
    throw std::runtime_error("the file is read-only");
  }
  if (target.error != ERROR_SUCCESS && target.error != ERROR_FILE_NOT_FOUND) {
    throw std::runtime_error(FormatSystemError(target.error));
  }
}

/// Puts `fresh` in the place of `replaced`, which may not exist yet. The file keeps the permissions
/// of the old one, except under Wine, where it has those of a new file.
void Replace(const WideString& replaced, const WideString& fresh) {
  if (!::ReplaceFileW(replaced.c_str(), fresh.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                      nullptr, nullptr) &&
      !::MoveFileExW(fresh.c_str(), replaced.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    throw std::runtime_error(FormatSystemError(::GetLastError()));
  }
}

void WriteAndClose(UniqueStream file, const std::string& text) {
  const bool isWritten =
      file && std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  // Flushes before closing, because closing does not report every failure to write the rest.
  const bool isFlushed = isWritten && std::fflush(file.get()) == 0;
  if (!isFlushed || std::fclose(file.release()) != 0) {
    throw std::runtime_error(std::strerror(errno));
  }
}

}  // namespace

std::string ReadTextFile(const std::string& path, size_t largest) {
  UniqueStream file;
  FILE* stream = stdin;
  if (path == "-") {
    ::_setmode(::_fileno(stdin), _O_BINARY);
  } else {
    file.reset(::_wfopen(ToSystemPath(path).c_str(), L"rb"));
    stream = file.get();
  }
  std::string text;
  char buffer[4096];
  size_t size = 1;
  while (stream && size > 0) {
    size = std::fread(buffer, 1, sizeof buffer, stream);
    text.append(buffer, size);
    if (text.size() > largest) {
      throw std::runtime_error("the file is larger than " + std::to_string(largest) + " bytes");
    }
  }
  if (!stream || std::ferror(stream)) {
    throw std::runtime_error(std::strerror(errno));
  }
  return text;
}

void WriteTextFile(const std::string& path, const std::string& text) {
  const Target target(path);
  RequireWritableTarget(target);
  const WideString fresh = MakeFreshName(target.path);
  UniqueStream file(target.isDevice ? nullptr : ::_wfopen(fresh.c_str(), L"wb"));
  if (!file && target.error == ERROR_SUCCESS) {
    WriteAndClose(UniqueStream(::_wfopen(target.path.c_str(), L"wb")), text);
    return;
  }
  try {
    WriteAndClose(std::move(file), text);
    Replace(target.path, fresh);
  } catch (const std::runtime_error& failure) {
    // A replacement that fails half-way may leave the new file as the only one.
    if (target.error == ERROR_SUCCESS && !qm::common::PathExists(target.path)) {
      throw std::runtime_error(failure.what() + std::string("; the new text is in ") +
                               SpellPath(qm::text::ToUtf8(fresh)));
    }
    ::DeleteFileW(fresh.c_str());
    throw;
  }
}

std::string ResolveTarget(const std::string& path) { return qm::text::ToUtf8(Target(path).path); }

void RequireWritable(const std::string& path) {
  const Target target(path);
  RequireWritableTarget(target);
  if (target.error == ERROR_FILE_NOT_FOUND) {
    const qm::common::UniqueFile probe(::CreateFileW(MakeFreshName(target.path).c_str(),
                                                     GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                                     FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (!probe) {
      throw std::runtime_error(FormatSystemError(::GetLastError()));
    }
  }
}

}  // namespace mmcat
