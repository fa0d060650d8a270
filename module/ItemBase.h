#pragma once

#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/Bstr.h"
#include "common/WideString.h"

namespace qm::module {

/// Base of the items of a module's collections: read-only objects that hold copies of a row's
/// values, set once by the item's Init.
template <class Interface>
class ItemBase : public com::DispatchImpl<Interface>,
                 public com::SupportErrorInfo<Interface>,
                 public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<Interface, Interface, IDispatch>,
                                         com::Via<ISupportErrorInfo, ISupportErrorInfo>>;

 protected:
  /// Implements a text property. Always returns S_OK: a null pointer is ignored, and the text is
  /// null if memory is short.
  static HRESULT GetText(const common::WideString& text, BSTR* value) noexcept {
    if (value) {
      *value = common::TryAllocateBstr(text);
    }
    return S_OK;
  }
};

/// An item with a name as its only property.
template <class Interface>
class NamedItemBase : public ItemBase<Interface> {
 public:
  void Init(const common::WideString& name) { m_strName = name; }
  const common::WideString& CollectionKey() const noexcept { return m_strName; }

  STDMETHOD(get_Name)(BSTR* value) override { return this->GetText(m_strName, value); }

 private:
  common::WideString m_strName;
};

}  // namespace qm::module
