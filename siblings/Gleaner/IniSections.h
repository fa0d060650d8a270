#pragma once

#include "siblings/Gleaner/IniObject.h"

/// A section of a file.
class CIniSection : public CIniObject<IIniSection> {
 public:
  void Init(std::shared_ptr<const CIniFile> file, const CIniFile::Section& section) noexcept;

  STDMETHOD(get_Name)(BSTR* name) override;
  STDMETHOD(get_Keys)(IIniKeys** keys) override;

 private:
  std::shared_ptr<const CIniFile> m_pFile;
  const CIniFile::Section* m_pSection = nullptr;
};

/// The sections of a file.
class CIniSections : public CIniObject<IIniSections> {
 public:
  void Init(std::shared_ptr<const CIniFile> file) noexcept;

  STDMETHOD(get_Item)(VARIANT index, IIniSection** section) override;

 private:
  std::shared_ptr<const CIniFile> m_pFile;
};
