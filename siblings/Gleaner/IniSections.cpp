#include "siblings/Gleaner/IniSections.h"

#include "common/CollectionIndex.h"
#include "siblings/Gleaner/IniKeys.h"

namespace qm::siblings {

void IniSection::Init(std::shared_ptr<const IniDocument> file,
                      const IniDocument::Section& section) noexcept {
  m_pFile = std::move(file);
  m_pSection = &section;
}

STDMETHODIMP IniSection::get_Name(BSTR* name) {
  return AnswerText(name, [&] { return m_pFile->GetText(m_pSection->name); });
}

STDMETHODIMP IniSection::get_Keys(IIniKeys** keys) {
  return Answer(keys, [&] { return com::MakeObject<IniKeys>(m_pFile, *m_pSection); });
}

void IniSections::Init(std::shared_ptr<const IniDocument> file) noexcept {
  m_pFile = std::move(file);
}

STDMETHODIMP IniSections::get_Item(VARIANT index, IIniSection** section) {
  return Answer(section, [&]() -> IIniSection* {
    const common::CollectionIndex wanted(index);
    const IniDocument::Section* const found = wanted.IsKey()
                                                  ? m_pFile->FindSection(wanted.Key())
                                                  : m_pFile->GetSection(wanted.Position());
    return found ? com::MakeObject<IniSection>(m_pFile, *found) : nullptr;
  });
}

}  // namespace qm::siblings
