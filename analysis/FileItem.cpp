#include "analysis/FileItem.h"

#include "analysis/ModuleItem.h"
#include "analysis/SetCollection.h"

namespace qm::analysis {

void SetFile::Init(SharedSet set, const merge::FoundFile& found) noexcept {
  m_set = std::move(set);
  m_found = found;
}

STDMETHODIMP SetFile::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_found.module); });
}
STDMETHODIMP SetFile::get_Key(BSTR* value) { return AnswerUtf8(value, m_found.file->key); }
STDMETHODIMP SetFile::get_Name(BSTR* value) { return AnswerUtf8(value, m_found.file->name); }
STDMETHODIMP SetFile::get_ShortName(BSTR* value) {
  return AnswerUtf8(value, m_found.file->shortName);
}
STDMETHODIMP SetFile::get_Component(BSTR* value) {
  return AnswerUtf8(value, m_found.file->component);
}
STDMETHODIMP SetFile::get_Directory(BSTR* value) {
  return AnswerUtf8(value, m_found.file->directory);
}
STDMETHODIMP SetFile::get_TargetPath(BSTR* value) {
  return AnswerText(value, [&] {
    return text::ToWide(m_set->SpellTargetPath(m_found.module, m_found.file->directory));
  });
}
STDMETHODIMP SetFile::get_IsRedirected(VARIANT_BOOL* value) {
  return Answer(value, [&] {
    return m_set->ResolveFolder(m_found.module, m_found.file->directory).IsRedirected()
               ? VARIANT_TRUE
               : VARIANT_FALSE;
  });
}
STDMETHODIMP SetFile::get_Size(long* value) { return AnswerNumber(value, m_found.file->size); }
STDMETHODIMP SetFile::get_Version(BSTR* value) { return AnswerUtf8(value, m_found.file->version); }
STDMETHODIMP SetFile::get_Language(BSTR* value) {
  return AnswerUtf8(value, m_found.file->language);
}
STDMETHODIMP SetFile::get_Sequence(long* value) {
  return AnswerNumber(value, m_found.file->sequence);
}
STDMETHODIMP SetFile::get_IsSetAtRunTime(VARIANT_BOOL* value) {
  return Answer(value, [&] {
    return m_set->ResolveFolder(m_found.module, m_found.file->directory).end ==
                   merge::FolderEnd::RunTime
               ? VARIANT_TRUE
               : VARIANT_FALSE;
  });
}

ISetFiles* MakeFiles(const SharedSet& set, std::vector<merge::FoundFile> files) {
  const auto shared = std::make_shared<const std::vector<merge::FoundFile>>(std::move(files));
  return MakeCollection<ISetFiles, ISetFile>(
      shared->size(),
      [set, shared](size_t at) { return com::MakeObject<SetFile>(set, (*shared)[at]); },
      [shared](size_t at) { return std::string((*shared)[at].file->key); });
}

}  // namespace qm::analysis
