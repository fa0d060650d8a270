#include "siblings/Gleaner/IniReader.h"

#include "siblings/Gleaner/IniSections.h"

namespace qm::siblings {

STDMETHODIMP CIniReader::get_Sections(IIniSections** sections) {
  return Answer(sections, [&] {
    return com::MakeObject<IniSections>(
        m_pFile ? m_pFile : std::make_shared<const IniDocument>(std::wstring()));
  });
}

STDMETHODIMP CIniReader::Load(BSTR path) {
  return MethodBoundary([&] {
    m_pFile.reset();
    m_pFile = IniDocument::Load(path);
    return S_OK;
  });
}

}  // namespace qm::siblings
