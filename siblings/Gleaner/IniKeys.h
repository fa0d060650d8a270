#pragma once

#include "siblings/Gleaner/IniObject.h"

namespace qm::siblings {

/// A key of a section.
class IniKey : public IniObject<IIniKey> {
 public:
  void Init(std::shared_ptr<const IniDocument> file, const IniDocument::Key& key) noexcept;

  STDMETHOD(get_Name)(BSTR* name) override;
  STDMETHOD(get_Value)(BSTR* value) override;

 private:
  std::shared_ptr<const IniDocument> m_pFile;
  const IniDocument::Key* m_pKey = nullptr;
};

/// The keys of a section.
class IniKeys : public IniObject<IIniKeys> {
 public:
  void Init(std::shared_ptr<const IniDocument> file, const IniDocument::Section& section) noexcept;

  STDMETHOD(get_Item)(VARIANT index, IIniKey** key) override;
  STDMETHOD(get_Count)(long* count) override;

 private:
  std::shared_ptr<const IniDocument> m_pFile;
  const IniDocument::Section* m_pSection = nullptr;
};

}  // namespace qm::siblings
