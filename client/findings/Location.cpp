#include "client/findings/Location.h"

#include <algorithm>
#include <vector>

#include "text/Fold.h"

namespace mmcat {

namespace {

struct SplitPath {
  std::string root;  ///< "/", "C:/" or "//"; empty for a path that is not full
  std::vector<std::string> parts;
};

bool HasDrive(const std::string& path) { return path.size() >= 3 && path.compare(1, 2, ":/") == 0; }

SplitPath Split(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  SplitPath split;
  split.root = path.substr(0, HasDrive(path)             ? 3
                              : path.rfind("//", 0) == 0 ? 2
                                                         : path.rfind('/', 0) == 0);
  for (size_t start = split.root.size(); start < path.size();) {
    const size_t end = std::min(path.find('/', start), path.size());
    if (end > start) {
      split.parts.push_back(path.substr(start, end - start));
    }
    start = end + 1;
  }
  return split;
}

std::string Join(const std::string& root, const std::vector<std::string>& parts) {
  std::string path = root;
  for (const std::string& part : parts) {
    path += (&part == &parts.front() ? "" : "/") + part;
  }
  return path;
}

}  // namespace

std::string MakeRelativePath(const std::string& path, const std::string& base) {
  const SplitPath from = Split(base);
  SplitPath to = Split(path);
  // Only paths of the host system are case-sensitive.
  const bool ignoresCase = HasDrive(to.root) || to.root == "//";
  const auto isSame = [&](const std::string& a, const std::string& b) {
    return ignoresCase ? qm::text::FoldCase(a) == qm::text::FoldCase(b) : a == b;
  };
  // The folders of different servers have nothing in common.
  const bool isElsewhere = to.root.empty() || !isSame(from.root, to.root) ||
                           (to.root == "//" && (from.parts.empty() || to.parts.empty() ||
                                                !isSame(from.parts[0], to.parts[0])));
  if (isElsewhere) {
    return Join(to.root, to.parts);
  }
  size_t shared = 0;
  while (shared < from.parts.size() && shared + 1 < to.parts.size() &&
         isSame(from.parts[shared], to.parts[shared])) {
    ++shared;
  }
  std::vector<std::string> parts(from.parts.size() - shared, "..");
  parts.insert(parts.end(), to.parts.begin() + static_cast<std::ptrdiff_t>(shared), to.parts.end());
  return Join("", parts);
}

std::string MakeUri(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  constexpr char kPlain[] = "-._~/!$&'()*+,;=@";
  const bool hasDrive = HasDrive(path);
  std::string uri = hasDrive                   ? "file:///"
                    : path.rfind("//", 0) == 0 ? "file:"
                    : path.rfind('/', 0) == 0  ? "file://"
                                               : "";
  for (size_t i = 0; i < path.size(); ++i) {
    const char c = path[i];
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') ||
                         std::string_view(kPlain).find(c) != std::string_view::npos;
    if (isPlain || (hasDrive && i == 1)) {
      uri += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      uri += '%';
      uri += kDigits[byte >> 4U];
      uri += kDigits[byte & 15U];
    }
  }
  return uri;
}

}  // namespace mmcat
