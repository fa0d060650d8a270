#include "siblings/Gleaner/IniSections.h"

#include "common/CollectionIndex.h"
#include "siblings/Gleaner/IniKeys.h"

void CIniSection::Init(std::shared_ptr<const CIniFile> file,
                       const CIniFile::Section& section) noexcept {
  m_pFile = std::move(file);
  m_pSection = &section;
}

STDMETHODIMP CIniSection::get_Name(BSTR* name) {
  return AnswerText(name, [&] { return m_pFile->TextAt(m_pSection->name); });
}

STDMETHODIMP CIniSection::get_Keys(IIniKeys** keys) {
  return Answer(keys, [&] { return Make<CIniKeys>(m_pFile, *m_pSection); });
}

void CIniSections::Init(std::shared_ptr<const CIniFile> file) noexcept {
  m_pFile = std::move(file);
}

STDMETHODIMP CIniSections::get_Item(VARIANT index, IIniSection** section) {
  return Answer(section, [&]() -> IIniSection* {
    const CCollectionIndex wanted(index);
    const CIniFile::Section* const found = wanted.IsText() ? m_pFile->FindSection(wanted.Text())
                                                           : m_pFile->SectionAt(wanted.Position());
    return found ? Make<CIniSection>(m_pFile, *found) : nullptr;
  });
}
