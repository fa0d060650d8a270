#pragma once

#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/siblings.h"

/// Base of a component's objects. Each has one interface and reports failures under the component's
/// class.
template <class Interface, const CLSID* pClsid>
class CComponentObject : public IDispatchImpl<Interface>,
                         public CSupportErrorInfo<Interface>,
                         public CErrorHandler<pClsid>,
                         public CComObjectRoot {
 public:
  using InterfaceMap = CInterfaceMap<Via<Interface, Interface, IDispatch>,
                                     Via<ISupportErrorInfo, ISupportErrorInfo>>;

 protected:
  /// Creates an object of one of the component's classes and calls its Init. The caller owns the
  /// reference.
  template <class Object, class... Content>
  static CComObject<Object>* Make(Content&&... content) {
    auto object = CComObject<Object>::Create();
    object->Init(std::forward<Content>(content)...);
    return object.Detach();
  }
};
