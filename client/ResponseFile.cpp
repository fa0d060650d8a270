#include "client/ResponseFile.h"

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "client/catalog/PathSpelling.h"

namespace mmcat {

namespace {

struct FileCloser {
  void operator()(FILE* file) const noexcept { std::fclose(file); }
};

std::string ReadAll(const std::string& path) {
  std::unique_ptr<FILE, FileCloser> file;
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
  }
  if (!stream || std::ferror(stream)) {
    throw std::runtime_error("@" + path + ": cannot read the arguments: " + std::strerror(errno));
  }
  return text;
}

/// Adds what each separator of a text ends, and what follows the last one.
void AddPieces(const std::string& text, char separator, std::vector<std::string>& pieces) {
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find(separator, start), text.size());
    pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
}

}  // namespace

std::vector<std::string> ExpandResponseFiles(const std::vector<std::string>& arguments) {
  std::vector<std::string> expanded;
  for (const std::string& argument : arguments) {
    if (argument.size() < 2 || argument.front() != '@') {
      expanded.push_back(argument);
      continue;
    }
    const std::string text = ReadAll(argument.substr(1));
    if (text.find('\0') != std::string::npos) {
      AddPieces(text, '\0', expanded);
      continue;
    }
    std::vector<std::string> lines;
    AddPieces(text, '\n', lines);
    for (std::string& line : lines) {
      line.erase(line.find_last_not_of('\r') + 1);
      if (!line.empty()) {
        expanded.push_back(std::move(line));
      }
    }
  }
  return expanded;
}

}  // namespace mmcat
