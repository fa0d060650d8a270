#include "analysis/GalleryFiles.h"

#include <algorithm>

#include "analysis/CaptureFailure.h"
#include "com/error/Raise.h"
#include "common/Bstr.h"
#include "common/FolderFiles.h"
#include "common/ModuleKey.h"
#include "gallery/IniAccess.h"
#include "gallery/MMGallery.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace qm::analysis {

namespace {

constexpr std::wstring_view kExtension = L".ini";

/// Reads the identity of the module from its description. Of several equal keys, the first is used.
void ReadIdentity(GalleryDescription& description) {
  const common::ComPtr<IIniReader> reader = gallery::CreateIniReader();
  com::RaiseIfFailed(reader->Load(com::AllocateBstr(text::ToWide(description.path)).Get()));
  const common::ComPtr<IIniSection> section = gallery::FindSection(*reader, L"MergeModule");
  if (!section) {
    return;
  }
  const common::ComPtr<IIniKeys> keys = gallery::GetKeys(*section);
  const auto read = [&](const wchar_t* name) {
    const common::ComPtr<IIniKey> key = gallery::FindKey(*keys, name);
    return key ? gallery::GetKeyValue(*key) : common::WideString();
  };
  const common::WideString id = read(L"ModuleID");
  description.moduleId = text::ToUtf8(id);
  description.version = text::ToUtf8(read(L"Version"));
  if (!id.empty()) {
    description.key = text::ToUtf8(common::MakeModuleKey(id, ::_wtol(read(L"Language").c_str())));
  }
}

GalleryDescription Describe(const common::WideString& folder, std::wstring_view fileName) {
  GalleryDescription description;
  description.path = text::ToUtf8(common::JoinPath(folder, fileName));
  description.packageCode = text::ToUtf8(fileName.substr(0, fileName.size() - kExtension.size()));
  if (const auto failure = CaptureFailure([&] { ReadIdentity(description); })) {
    description.failure = DescribeFailure(*failure, description.path);
    description.failureCode = failure->hr;
  }
  return description;
}

/// Reads a description into a module: summary and lists.
class DescriptionReader {
 public:
  DescriptionReader(merge::Module& module, std::vector<std::unique_ptr<const std::string>>& texts)
      : m_module(module), m_texts(texts) {
    m_description.SetNameAndVersion(text::ToWide(module.packageCode), text::ToWide(module.version));
  }

  void Read() {
    m_module.subject = text::ToUtf8(m_description.GetSubject());
    m_module.author = text::ToUtf8(m_description.GetAuthor());
    m_module.comments = text::ToUtf8(m_description.GetComments());
    for (long index = 0; index < m_description.GetDependencyCount(); ++index) {
      ReadRequirement(index);
    }
    for (long index = 0; index < m_description.GetExclusionCount(); ++index) {
      ReadExclusion(index);
    }
    for (long index = 0; index < m_description.GetFileCount(); ++index) {
      ReadFile(index);
    }
  }

 private:
  static std::string Text(const common::UniqueBstr& text) {
    return text::ToUtf8(common::ViewOf(text.Get()));
  }
  std::string_view Keep(std::string text) {
    m_texts.push_back(std::make_unique<const std::string>(std::move(text)));
    return *m_texts.back();
  }

  void ReadRequirement(long index) {
    common::UniqueBstr id;
    common::UniqueBstr version;
    long language = 0;
    m_description.GetDependency(index, id.Put(), version.Put(), &language);
    m_module.requirements.push_back({Text(id), language, Text(version)});
  }

  void ReadExclusion(long index) {
    common::UniqueBstr id;
    common::UniqueBstr minVersion;
    common::UniqueBstr maxVersion;
    long language = 0;
    m_description.GetExclusion(index, id.Put(), minVersion.Put(), maxVersion.Put(), &language);
    m_module.exclusions.push_back({Text(id), language, Text(minVersion), Text(maxVersion)});
  }

  void ReadFile(long index) {
    common::UniqueBstr key;
    common::UniqueBstr name;
    common::UniqueBstr version;
    long size = 0;
    long language = 0;
    m_description.GetFile(index, key.Put(), name.Put(), version.Put(), &size, &language);
    const std::string_view keptKey = Keep(Text(key));
    const std::string_view keptName = Keep(Text(name));
    merge::DeliveredFile file =
        merge::MakeDeliveredFile(keptName, {}, keptKey, Keep(Text(version)), size);
    file.language = Keep(std::to_string(language));
    m_module.files.push_back(file);
  }

  merge::Module& m_module;
  std::vector<std::unique_ptr<const std::string>>& m_texts;
  gallery::CMMGallery m_description;
};

}  // namespace

std::vector<GalleryDescription> ReadGalleryDescriptions() {
  const common::WideString root = gallery::GetServiceText(*gallery::CreateApplicationServices(),
                                                          &IApplicationServices::get_GalleryRoot);
  if (root.empty()) {
    return {};  // the joined path would be relative to the current folder
  }
  const common::WideString folder = common::JoinPath(root, L"ObjectGallery");
  std::vector<std::wstring> names;
  common::ForEachFile(folder, kExtension,
                      [&](const WIN32_FIND_DATAW& found) { names.emplace_back(found.cFileName); });
  std::sort(names.begin(), names.end(), [](const std::wstring& a, const std::wstring& b) {
    return text::CompareFolded(a, b) < 0;
  });
  std::vector<GalleryDescription> descriptions;
  descriptions.reserve(names.size());
  for (const std::wstring& name : names) {
    descriptions.push_back(Describe(folder, name));
  }
  return descriptions;
}

HRESULT ReadDescription(merge::Module& module,
                        std::vector<std::unique_ptr<const std::string>>& texts) {
  const auto failure = CaptureFailure([&] { DescriptionReader(module, texts).Read(); });
  if (!failure) {
    return S_OK;
  }
  module.failure = DescribeFailure(*failure, module.path);
  return failure->hr;
}

}  // namespace qm::analysis
