#include "client/GalleryFiles.h"

#include <algorithm>
#include <cstdlib>

#include "client/Properties.h"
#include "common/IgnoringCase.h"
#include "common/ModuleKey.h"
#include "common/Path.h"

namespace {

struct FindTraits {
  using Handle = HANDLE;
  static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { ::FindClose(handle); }
};

constexpr std::wstring_view kExtension = L".ini";

bool HasExtension(std::wstring_view name) noexcept {
  return name.size() > kExtension.size() &&
         EqualsIgnoringCase(name.substr(name.size() - kExtension.size()), kExtension);
}

/// The names of the description files of a folder.
std::vector<std::wstring> DescriptionNames(const CWideString& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  const CUniqueHandle<FindTraits> search(
      ::FindFirstFileW(JoinPath(folder, L"*.ini").c_str(), &found));
  if (!search) {
    return names;
  }
  do {
    // Short names match as well.
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && HasExtension(found.cFileName)) {
      names.emplace_back(found.cFileName);
    }
  } while (::FindNextFileW(search.Get(), &found));
  std::sort(names.begin(), names.end(), [](const std::wstring& a, const std::wstring& b) {
    return CompareIgnoringCase(a.c_str(), b.c_str()) < 0;
  });
  return names;
}

VARIANT NameIndex(const CUniqueBstr& name) noexcept {
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = name.Get();
  return index;
}

/// The lines of section "MergeModule"; null when there is none.
CComPtr<IIniKeys> ModuleKeys(IIniReader& reader) {
  const CComPtr<IIniSections> sections = Get(reader, &IIniReader::get_Sections);
  CComPtr<IIniSection> section;
  Check(sections->get_Item(NameIndex(Argument(L"MergeModule")), section.Put()));
  return section ? Get(*section, &IIniSection::get_Keys) : CComPtr<IIniKeys>();
}

std::string Value(IIniKeys& keys, std::wstring_view name) {
  CComPtr<IIniKey> key;
  Check(keys.get_Item(NameIndex(Argument(name)), key.Put()));
  return key ? Text(*key, &IIniKey::get_Value) : "";
}

void Read(GalleryFile& file) {
  const auto reader = Create<IIniReader>(CLSID_IniReader, "Gleaner.dll");
  Check(reader->Load(Argument(ToWide(file.path)).Get()));
  if (const CComPtr<IIniKeys> keys = ModuleKeys(*reader)) {
    file.moduleId = Value(*keys, L"ModuleID");
    file.version = Value(*keys, L"Version");
    const long language = std::strtol(Value(*keys, L"Language").c_str(), nullptr, 10);
    if (!file.moduleId.empty()) {
      file.key = ToUtf8(MakeModuleKey(ToWide(file.moduleId), language));
    }
  }
}

}  // namespace

std::vector<GalleryFile> ReadGalleryFiles() {
  const auto services =
      Create<IApplicationServices>(CLSID_ApplicationServices, "QmAppServices.dll");
  const std::string root = Text(*services, &IApplicationServices::get_GalleryRoot);
  if (root.empty()) {
    return {};
  }
  const CWideString folder = JoinPath(ToWide(root), L"ObjectGallery");
  std::vector<GalleryFile> files;
  for (const std::wstring& name : DescriptionNames(folder)) {
    GalleryFile file;
    file.path = ToUtf8(JoinPath(folder, name));
    file.packageCode = ToUtf8(std::wstring_view(name).substr(0, name.size() - kExtension.size()));
    try {
      Read(file);
    } catch (const ServerFailure& failure) {
      file.failure = failure;
    }
    files.push_back(std::move(file));
  }
  return files;
}
