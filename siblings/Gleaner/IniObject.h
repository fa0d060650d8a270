#pragma once

#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "common/Bstr.h"
#include "idl/siblings.h"
#include "server/error/ErrorHandler.h"
#include "server/error/SupportErrorInfo.h"
#include "server/frame/ComObject.h"
#include "server/frame/DispatchImpl.h"
#include "siblings/Gleaner/IniFile.h"

/// Base of the reader and of everything that it hands out. Those are views: each shares the file
/// that was read, and is made anew whenever it is asked for.
template <class Interface>
class CIniObject : public IDispatchImpl<Interface>,
                   public CSupportErrorInfo<Interface>,
                   public CErrorHandler<&CLSID_IniReader>,
                   public CComObjectRoot {
 public:
  using InterfaceMap = CInterfaceMap<Via<Interface, Interface, IDispatch>,
                                     Via<ISupportErrorInfo, ISupportErrorInfo>>;

 protected:
  /// Runs `work` at the method boundary on the cleared out argument; E_POINTER for a null one.
  template <class Out, class Work>
  static HRESULT Answer(Out* out, Work&& work) noexcept {
    if (!out) {
      return E_POINTER;
    }
    *out = {};
    return CErrorHandler::MethodBoundary([&] {
      *out = work();
      return S_OK;
    });
  }

  static HRESULT AnswerText(BSTR* out, const CIniFile& file, CIniFile::Span text) noexcept {
    return Answer(out, [&] {
      BSTR copy = AllocBstr(file.TextAt(text));
      if (!copy) {
        throw std::bad_alloc();
      }
      return copy;
    });
  }

  /// A new object of a class derived from this one, with the reference of the caller.
  template <class Object, class... Content>
  static CComObject<Object>* Make(Content&&... content) {
    auto object = CComObject<Object>::Create();
    object->Init(std::forward<Content>(content)...);
    return object.Detach();
  }
};
