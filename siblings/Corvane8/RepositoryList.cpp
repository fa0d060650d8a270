#include "siblings/Corvane8/RepositoryList.h"

#include <algorithm>

#include "siblings/Corvane8/XmlReader.h"
#include "siblings/File.h"

namespace qm::siblings {

namespace {

/// The elements that are read, each a child of the one before it.
constexpr const wchar_t* kElements[] = {L"Repositories", L"Repository", L"Property"};

/// Processes the start tag of kElements[depth].
void ReadStartTag(XmlReader& document, size_t depth, RepositoryList& list) {
  if (depth == 1) {
    list.emplace_back();
  } else if (depth == 2) {
    if (std::optional<common::WideString> name = document.GetAttribute(L"Name")) {
      list.back().push_back(
          {std::move(*name), document.GetAttribute(L"Value").value_or(common::WideString())});
    }
  }
}

RepositoryList ParseRepositories(XmlReader& document) {
  constexpr auto raiseForRoot = [](XmlReader& at) {
    at.RaiseAtLine(WC_E_ROOTELEMENT, L"the root element is not <Repositories>");
  };
  RepositoryList list;
  bool hasRoot = false;
  size_t depth = 0;  // number of open elements
  size_t known = 0;  // how many of them, from the root on, match kElements
  for (XmlNodeType type = document.ReadNode(); type != XmlNodeType_None;
       type = document.ReadNode()) {
    if (type == XmlNodeType_Element) {
      const bool counts =
          known == depth && depth < std::size(kElements) && document.HasName(kElements[depth]);
      if (depth == 0 && !counts) {
        raiseForRoot(document);
      }
      hasRoot = true;
      if (counts) {
        ReadStartTag(document, depth, list);
      }
      if (!document.IsEmptyElement()) {
        known += counts;
        ++depth;
      }
    } else if (type == XmlNodeType_EndElement) {
      --depth;
      known = std::min(known, depth);
    }
  }
  if (!hasRoot) {
    raiseForRoot(document);
  }
  return list;
}

}  // namespace

std::shared_ptr<const RepositoryList> ReadRepositories(const common::WideString& path) {
  const common::UniqueFile file = OpenFile(path);
  if (!file) {
    if (!IsMissingFile(::GetLastError())) {
      RaiseLastFileError(path);
    }
    return std::make_shared<const RepositoryList>();
  }
  XmlReader document(path, ReadAllBytes(file, path));
  return std::make_shared<const RepositoryList>(ParseRepositories(document));
}

bool IsMissingFile(unsigned long code) noexcept {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

std::wstring_view FindValue(const Repository& repository, std::wstring_view name) noexcept {
  const auto found = std::find_if(repository.begin(), repository.end(),
                                  [&](const auto& property) { return property.name == name; });
  return found == repository.end() ? std::wstring_view() : std::wstring_view(found->value);
}

}  // namespace qm::siblings
