#pragma once

#include <new>
#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/Bstr.h"
#include "idl/siblings.h"

/// Base of the objects of a component. Each has one interface, and reports failures under the
/// component's class.
template <class Interface, const CLSID* pClsid>
class CComponentObject : public IDispatchImpl<Interface>,
                         public CSupportErrorInfo<Interface>,
                         public CErrorHandler<pClsid>,
                         public CComObjectRoot {
 public:
  using InterfaceMap = CInterfaceMap<Via<Interface, Interface, IDispatch>,
                                     Via<ISupportErrorInfo, ISupportErrorInfo>>;

 protected:
  /// Runs `work` at the method boundary and gives its result to the caller. The out argument is
  /// cleared first; E_POINTER for a null one.
  template <class Out, class Work>
  static HRESULT Answer(Out* out, Work&& work) noexcept {
    if (!out) {
      return E_POINTER;
    }
    *out = {};
    return CErrorHandler<pClsid>::MethodBoundary([&] {
      *out = work();
      return S_OK;
    });
  }

  /// The same for a text.
  template <class Work>
  static HRESULT AnswerText(BSTR* out, Work&& work) noexcept {
    return Answer(out, [&] {
      BSTR copy = AllocBstr(work());
      if (!copy) {
        throw std::bad_alloc();
      }
      return copy;
    });
  }

  /// A new object of a class of the component, with the reference of the caller.
  template <class Object, class... Content>
  static CComObject<Object>* Make(Content&&... content) {
    auto object = CComObject<Object>::Create();
    object->Init(std::forward<Content>(content)...);
    return object.Detach();
  }
};
