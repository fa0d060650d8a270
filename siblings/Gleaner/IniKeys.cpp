#include "siblings/Gleaner/IniKeys.h"

#include "common/CollectionIndex.h"

namespace qm::siblings {

void IniKey::Init(std::shared_ptr<const IniDocument> file, const IniDocument::Key& key) noexcept {
  m_pFile = std::move(file);
  m_pKey = &key;
}

STDMETHODIMP IniKey::get_Name(BSTR* name) {
  return AnswerText(name, [&] { return m_pFile->GetText(m_pKey->name); });
}

STDMETHODIMP IniKey::get_Value(BSTR* value) {
  return AnswerText(value, [&] { return m_pFile->GetText(m_pKey->value); });
}

void IniKeys::Init(std::shared_ptr<const IniDocument> file,
                   const IniDocument::Section& section) noexcept {
  m_pFile = std::move(file);
  m_pSection = &section;
}

STDMETHODIMP IniKeys::get_Item(VARIANT index, IIniKey** key) {
  return Answer(key, [&]() -> IIniKey* {
    const common::CollectionIndex wanted(index);
    const IniDocument::Key* const found = wanted.IsKey()
                                              ? m_pFile->FindKey(*m_pSection, wanted.Key())
                                              : m_pFile->GetKey(*m_pSection, wanted.Position());
    return found ? com::MakeObject<IniKey>(m_pFile, *found) : nullptr;
  });
}

STDMETHODIMP IniKeys::get_Count(long* count) {
  return Answer(count, [&] { return static_cast<long>(m_pSection->keyCount); });
}

}  // namespace qm::siblings
