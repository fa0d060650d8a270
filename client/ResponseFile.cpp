#include "client/ResponseFile.h"

#include <algorithm>
#include <stdexcept>

#include "client/catalog/TextFile.h"

namespace mmcat {

namespace {

constexpr size_t kLargest = 64 * 1024 * 1024;  // bytes; more would exhaust the memory

std::string ReadArguments(const std::string& path) {
  try {
    return ReadTextFile(path, kLargest);
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error("@" + path + ": cannot read the arguments: " + failure.what());
  }
}

/// Splits a text at a separator. A separator at the end adds no empty piece.
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
  bool isLiteral = false;
  for (const std::string& argument : arguments) {
    isLiteral = isLiteral || argument == "--";
    if (isLiteral || argument.size() < 2 || argument.front() != '@') {
      expanded.push_back(argument);
      continue;
    }
    const std::string text = ReadArguments(argument.substr(1));
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
