#include "siblings/Gleaner/IniKeys.h"

#include "common/CollectionIndex.h"

void CIniKey::Init(std::shared_ptr<const CIniFile> file, const CIniFile::Key& key) noexcept {
  m_pFile = std::move(file);
  m_pKey = &key;
}

STDMETHODIMP CIniKey::get_Name(BSTR* name) {
  return AnswerText(name, [&] { return m_pFile->TextAt(m_pKey->name); });
}

STDMETHODIMP CIniKey::get_Value(BSTR* value) {
  return AnswerText(value, [&] { return m_pFile->TextAt(m_pKey->value); });
}

void CIniKeys::Init(std::shared_ptr<const CIniFile> file,
                    const CIniFile::Section& section) noexcept {
  m_pFile = std::move(file);
  m_pSection = &section;
}

STDMETHODIMP CIniKeys::get_Item(VARIANT index, IIniKey** key) {
  return Answer(key, [&]() -> IIniKey* {
    const CCollectionIndex wanted(index);
    const CIniFile::Key* const found = wanted.IsText()
                                           ? m_pFile->FindKey(*m_pSection, wanted.Text())
                                           : m_pFile->KeyAt(*m_pSection, wanted.Position());
    return found ? Make<CIniKey>(m_pFile, *found) : nullptr;
  });
}

STDMETHODIMP CIniKeys::get_Count(long* count) {
  return Answer(count, [&] { return static_cast<long>(m_pSection->keyCount); });
}
