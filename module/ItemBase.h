#pragma once

#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/Bstr.h"
#include "common/WideString.h"

/// Base of the items of a module's collections: read-only objects that hold copies of a row's
/// values, set once by the item's Init.
template <class Interface>
class CMMItem : public IDispatchImpl<Interface>,
                public CSupportErrorInfo<Interface>,
                public CComObjectRoot {
 public:
  using InterfaceMap = CInterfaceMap<Via<Interface, Interface, IDispatch>,
                                     Via<ISupportErrorInfo, ISupportErrorInfo>>;

 protected:
  /// Implements a text property. Always returns S_OK: a null pointer is ignored, and the text is
  /// null if memory is short.
  static HRESULT GetText(const CWideString& text, BSTR* value) noexcept {
    if (value) {
      *value = AllocBstr(text);
    }
    return S_OK;
  }
};

/// An item with a name as its only property.
template <class Interface>
class CMMNamedItem : public CMMItem<Interface> {
 public:
  void Init(const CWideString& name) { m_strName = name; }
  const CWideString& CollectionKey() const noexcept { return m_strName; }

  STDMETHOD(get_Name)(BSTR* value) override { return this->GetText(m_strName, value); }

 private:
  CWideString m_strName;
};
