#pragma once

#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"

namespace qm::com {

/// Base of a component's objects. Each has one interface and reports failures under the component's
/// class.
template <class Interface, const CLSID* pClsid>
class ComponentObject : public DispatchImpl<Interface>,
                        public SupportErrorInfo<Interface>,
                        public CErrorHandler<pClsid>,
                        public ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<Via<Interface, Interface, IDispatch>,
                                         Via<ISupportErrorInfo, ISupportErrorInfo>>;
};

}  // namespace qm::com
