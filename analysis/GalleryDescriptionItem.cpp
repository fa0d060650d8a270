#include "analysis/GalleryDescriptionItem.h"

namespace qm::analysis {

void GalleryDescriptionItem::Init(SharedSet set, const GalleryDescription& description) noexcept {
  m_set = std::move(set);
  m_description = &description;
}

STDMETHODIMP GalleryDescriptionItem::get_Path(BSTR* value) {
  return AnswerUtf8(value, m_description->path);
}
STDMETHODIMP GalleryDescriptionItem::get_PackageCode(BSTR* value) {
  return AnswerUtf8(value, m_description->packageCode);
}
STDMETHODIMP GalleryDescriptionItem::get_ModuleID(BSTR* value) {
  return AnswerUtf8(value, m_description->moduleId);
}
STDMETHODIMP GalleryDescriptionItem::get_Key(BSTR* value) {
  return AnswerUtf8(value, m_description->key);
}
STDMETHODIMP GalleryDescriptionItem::get_Version(BSTR* value) {
  return AnswerUtf8(value, m_description->version);
}
STDMETHODIMP GalleryDescriptionItem::get_Failure(BSTR* value) {
  return AnswerUtf8(value, m_description->failure);
}
STDMETHODIMP GalleryDescriptionItem::get_FailureCode(long* value) {
  return AnswerNumber(value, m_description->failureCode);
}

}  // namespace qm::analysis
