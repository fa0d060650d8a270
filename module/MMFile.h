#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"
#include "module/TableRows.h"

/// A file that a module delivers.
class CMMFile : public CMMItem<IMMFile> {
 public:
  void Init(const FileRecord& file);
  const CWideString& CollectionKey() const noexcept { return m_strKey; }

  STDMETHOD(get_Directory)(BSTR* value) override;
  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_FileSize)(long* value) override;
  STDMETHOD(get_FileName)(BSTR* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Language)(BSTR* value) override;
  STDMETHOD(get_Sequence)(long* value) override;

 private:
  CWideString m_strDirectory;
  CWideString m_strKey;
  long m_nFileSize = 0;
  CWideString m_strFileName;
  CWideString m_strVersion;
  CWideString m_strLanguage;
  long m_nSequence = 0;
};
