#pragma once

#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/siblings.h"

namespace qm::siblings {

/// Base of a component's objects. Each has one interface and reports failures under the component's
/// class.
template <class Interface, const CLSID* pClsid>
class ComponentObject : public com::DispatchImpl<Interface>,
                        public com::SupportErrorInfo<Interface>,
                        public com::CErrorHandler<pClsid>,
                        public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<Interface, Interface, IDispatch>,
                                         com::Via<ISupportErrorInfo, ISupportErrorInfo>>;

 protected:
  /// Creates an object of one of the component's classes and calls its Init. The caller owns the
  /// reference.
  template <class Object, class... Content>
  static com::ComObject<Object>* Create(Content&&... content) {
    auto object = com::ComObject<Object>::Create();
    object->Init(std::forward<Content>(content)...);
    return object.Detach();
  }
};

}  // namespace qm::siblings
