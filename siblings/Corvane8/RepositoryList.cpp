#include "siblings/Corvane8/RepositoryList.h"

#include <algorithm>

#include "siblings/Component/File.h"
#include "siblings/Corvane8/XmlReader.h"

namespace {

/// The elements that are read, each a child of the one before it.
constexpr const wchar_t* kElements[] = {L"Repositories", L"Repository", L"Property"};

/// Processes the start tag of kElements[depth].
void Take(CXmlDocument& document, size_t depth, RepositoryList& list) {
  if (depth == 1) {
    list.emplace_back();
  } else if (depth == 2) {
    if (std::optional<CWideString> name = document.Attribute(L"Name")) {
      list.back().push_back(
          {std::move(*name), document.Attribute(L"Value").value_or(CWideString())});
    }
  }
}

RepositoryList Parse(CXmlDocument& document) {
  constexpr auto raiseForRoot = [](CXmlDocument& at) {
    at.RaiseHere(WC_E_ROOTELEMENT, L"the root element is not <Repositories>");
  };
  RepositoryList list;
  bool hasRoot = false;
  size_t depth = 0;  // number of open elements
  size_t known = 0;  // how many of them, from the root on, match kElements
  for (XmlNodeType type = document.Next(); type != XmlNodeType_None; type = document.Next()) {
    if (type == XmlNodeType_Element) {
      const bool counts =
          known == depth && depth < std::size(kElements) && document.IsNamed(kElements[depth]);
      if (depth == 0 && !counts) {
        raiseForRoot(document);
      }
      hasRoot = true;
      if (counts) {
        Take(document, depth, list);
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

std::shared_ptr<const RepositoryList> ReadRepositories(const CWideString& path) {
  const CUniqueFile file = OpenFile(path);
  if (!file) {
    if (!IsMissingFile(::GetLastError())) {
      RaiseForFile(path);
    }
    return std::make_shared<const RepositoryList>();
  }
  CXmlDocument document(path, ReadBytes(file, path));
  return std::make_shared<const RepositoryList>(Parse(document));
}

bool IsMissingFile(unsigned long code) noexcept {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

std::wstring_view FindValue(const Repository& repository, std::wstring_view name) noexcept {
  const auto found = std::find_if(repository.begin(), repository.end(),
                                  [&](const auto& property) { return property.name == name; });
  return found == repository.end() ? std::wstring_view() : std::wstring_view(found->value);
}
