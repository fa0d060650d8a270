#pragma once

#include "catalog/ProjectKind.h"
#include "com/error/ErrorHandler.h"
#include "com/error/SupportErrorInfo.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"

namespace qm::catalog {

/// Base of the two catalog classes. Scripts can call the members up to IMMCatalogVelmora; those of
/// IMMCatalogCaskel are for C++.
template <const CLSID* pClsid>
class CatalogBase : public com::SupportErrorInfo<IMMCatalog, IMMCatalogVelmora, IMMCatalogCaskel>,
                    public com::DispatchImpl<IMMCatalogCaskel, IMMCatalogVelmora>,
                    public com::CErrorHandler<pClsid>,
                    public com::ComObjectRoot {
 public:
  /// The map of a class that has further interfaces.
  template <class... Others>
  using InterfaceMapWith = com::InterfaceMap<
      com::Via<ISupportErrorInfo, ISupportErrorInfo>,
      com::Via<IMMCatalogCaskel, IMMCatalogCaskel, IMMCatalogVelmora, IMMCatalog, IDispatch>,
      Others...>;
  using InterfaceMap = InterfaceMapWith<>;

  // The slots of the primary vtable after those of ISupportErrorInfo. Their order is a contract.

  /// Called once, as the last step of creation. If it fails, creation fails.
  virtual HRESULT Initialize() noexcept = 0;

  /// Reports a failure under the class; see CErrorHandler.
  virtual HRESULT Report(const com_exception& failure, const wchar_t* context) const noexcept {
    return com::CErrorHandler<pClsid>::Report(failure, context);
  }

  virtual ~CatalogBase() = default;

  HRESULT FinalConstruct() noexcept { return Initialize(); }

  STDMETHOD(put_Option)(VARIANT_BOOL value) override {
    m_bOption = value != VARIANT_FALSE;
    return S_OK;
  }

 protected:
  /// Implements a member that does nothing and returns 0.
  static HRESULT ReturnZero(long* result) noexcept {
    *result = 0;
    return S_OK;
  }

  /// Implements SupportsProject; `supportsKind` is the class's own rule for project kinds. Leaves
  /// VARIANT_TRUE in `*supported` if asking the project fails.
  template <class Rule>
  HRESULT AnswerSupportsProject(IUnknown* project, VARIANT_BOOL* supported,
                                Rule supportsKind) const noexcept {
    return this->MethodBoundary([&]() -> HRESULT {
      if (!supported) {
        return E_INVALIDARG;
      }
      *supported = VARIANT_TRUE;
      if (!project) {
        return E_INVALIDARG;
      }
      if (!supportsKind(GetProjectKind(*project))) {
        *supported = VARIANT_FALSE;
      }
      return S_OK;
    });
  }

 private:
  bool m_bOption = false;
};

}  // namespace qm::catalog
