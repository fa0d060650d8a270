#pragma once

#include "siblings/Gleaner/IniObject.h"

namespace qm::siblings {

/// A section of a file.
class IniSection : public IniObject<IIniSection> {
 public:
  void Init(std::shared_ptr<const IniDocument> file, const IniDocument::Section& section) noexcept;

  STDMETHOD(get_Name)(BSTR* name) override;
  STDMETHOD(get_Keys)(IIniKeys** keys) override;

 private:
  std::shared_ptr<const IniDocument> m_pFile;
  const IniDocument::Section* m_pSection = nullptr;
};

/// The sections of a file.
class IniSections : public IniObject<IIniSections> {
 public:
  void Init(std::shared_ptr<const IniDocument> file) noexcept;

  STDMETHOD(get_Item)(VARIANT index, IIniSection** section) override;

 private:
  std::shared_ptr<const IniDocument> m_pFile;
};

}  // namespace qm::siblings
