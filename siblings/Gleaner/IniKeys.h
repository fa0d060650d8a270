#pragma once

#include "siblings/Gleaner/IniObject.h"

/// A key of a section.
class CIniKey : public CIniObject<IIniKey> {
 public:
  void Init(std::shared_ptr<const CIniFile> file, const CIniFile::Key& key) noexcept;

  STDMETHOD(get_Name)(BSTR* name) override;
  STDMETHOD(get_Value)(BSTR* value) override;

 private:
  std::shared_ptr<const CIniFile> m_pFile;
  const CIniFile::Key* m_pKey = nullptr;
};

/// The keys of a section.
class CIniKeys : public CIniObject<IIniKeys> {
 public:
  void Init(std::shared_ptr<const CIniFile> file, const CIniFile::Section& section) noexcept;

  STDMETHOD(get_Item)(VARIANT index, IIniKey** key) override;
  STDMETHOD(get_Count)(long* count) override;

 private:
  std::shared_ptr<const CIniFile> m_pFile;
  const CIniFile::Section* m_pSection = nullptr;
};
