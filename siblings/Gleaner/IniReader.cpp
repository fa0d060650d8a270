#include "siblings/Gleaner/IniReader.h"

#include "siblings/Gleaner/IniSections.h"

STDMETHODIMP CIniReader::get_Sections(IIniSections** sections) {
  return Answer(sections, [&] {
    return Make<CIniSections>(m_pFile ? m_pFile : std::make_shared<const CIniFile>(std::wstring()));
  });
}

STDMETHODIMP CIniReader::Load(BSTR path) {
  return MethodBoundary([&] {
    m_pFile.reset();
    m_pFile = CIniFile::Load(path);
    return S_OK;
  });
}
