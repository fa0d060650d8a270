#pragma once

#include <vector>

#include "analysis/SetObject.h"
#include "merge/FileSearch.h"

namespace qm::analysis {

/// A row of a File table.
class SetFile : public SetObject<ISetFile> {
 public:
  void Init(SharedSet set, const merge::FoundFile& found) noexcept;

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_Name)(BSTR* value) override;
  STDMETHOD(get_ShortName)(BSTR* value) override;
  STDMETHOD(get_Component)(BSTR* value) override;
  STDMETHOD(get_Directory)(BSTR* value) override;
  STDMETHOD(get_TargetPath)(BSTR* value) override;
  STDMETHOD(get_IsRedirected)(VARIANT_BOOL* value) override;
  STDMETHOD(get_Size)(long* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Language)(BSTR* value) override;
  STDMETHOD(get_Sequence)(long* value) override;
  STDMETHOD(get_IsSetAtRunTime)(VARIANT_BOOL* value) override;

 private:
  SharedSet m_set;
  merge::FoundFile m_found{};
};

/// Makes a collection of files of modules of the set.
ISetFiles* MakeFiles(const SharedSet& set, std::vector<merge::FoundFile> files);

}  // namespace qm::analysis
