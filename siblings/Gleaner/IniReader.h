#pragma once

#include "siblings/Gleaner/IniObject.h"

namespace qm::siblings {

/// Reader of INI files (coclass IniReader).
class CIniReader : public IniObject<IIniReader> {
 public:
  STDMETHOD(get_Sections)(IIniSections** sections) override;
  STDMETHOD(Load)(BSTR path) override;

 private:
  std::shared_ptr<const IniDocument> m_pFile;
};

}  // namespace qm::siblings
