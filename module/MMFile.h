#pragma once

#include "idl/qmmmupdater.h"
#include "module/ItemBase.h"
#include "module/TableRows.h"

namespace qm::module {

/// A file that a module delivers.
class CMMFile : public ItemBase<IMMFile> {
 public:
  void Init(const FileRow& file);
  const common::WideString& CollectionKey() const noexcept { return m_strKey; }

  STDMETHOD(get_Directory)(BSTR* value) override;
  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_FileSize)(long* value) override;
  STDMETHOD(get_FileName)(BSTR* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Language)(BSTR* value) override;
  STDMETHOD(get_Sequence)(long* value) override;

 private:
  common::WideString m_strDirectory;
  common::WideString m_strKey;
  long m_nFileSize = 0;
  common::WideString m_strFileName;
  common::WideString m_strVersion;
  common::WideString m_strLanguage;
  long m_nSequence = 0;
};

}  // namespace qm::module
