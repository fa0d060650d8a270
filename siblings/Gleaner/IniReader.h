#pragma once

#include "siblings/Gleaner/IniObject.h"

/// Reader of INI files (coclass IniReader).
class CIniReader : public CIniObject<IIniReader> {
 public:
  STDMETHOD(get_Sections)(IIniSections** sections) override;
  STDMETHOD(Load)(BSTR path) override;

 private:
  std::shared_ptr<const CIniFile> m_pFile;
};
