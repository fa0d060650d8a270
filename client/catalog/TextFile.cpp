#include "client/catalog/TextFile.h"

#include <windows.h>
// Needs the types of windows.h.
#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/SystemError.h"

namespace mmcat {

namespace {

struct FileCloser {
  void operator()(FILE* file) const noexcept { std::fclose(file); }
};
using UniqueStream = std::unique_ptr<FILE, FileCloser>;

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
  const qm::common::WideString target = ToSystemPath(path);
  const qm::common::WideString fresh = target + L".new";
  UniqueStream file(::_wfopen(fresh.c_str(), L"wb"));
  if (!file) {
    throw std::runtime_error(std::strerror(errno));
  }
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  // Some of it may be written only now.
  const bool isClosed = std::fclose(file.release()) == 0;
  if (!isWritten || !isClosed) {
    const std::string reason = std::strerror(errno);
    ::DeleteFileW(fresh.c_str());
    throw std::runtime_error(reason);
  }
  if (!::MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    const DWORD code = ::GetLastError();
    ::DeleteFileW(fresh.c_str());
    throw std::runtime_error(FormatSystemError(code));
  }
}

}  // namespace mmcat
