#include "tools/automation_doc/TextFile.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "text/Utf.h"

namespace qm::docs {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File Open(const wchar_t* path, const wchar_t* mode) {
  File file(::_wfopen(path, mode));
  if (!file) {
    throw std::runtime_error("cannot open " + text::ToUtf8(path));
  }
  return file;
}

}  // namespace

std::string ReadTextFile(const wchar_t* path) {
  const File file = Open(path, L"rb");
  std::string text;
  char buffer[4096];
  while (const size_t count = std::fread(buffer, 1, sizeof buffer, file.get())) {
    text.append(buffer, count);
  }
  return text;
}

void WriteTextFile(const wchar_t* path, const std::string& text) {
  File file = Open(path, L"wb");
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  if (std::fclose(file.release()) != 0 || !written) {
    throw std::runtime_error("cannot write " + text::ToUtf8(path));
  }
}

}  // namespace qm::docs
