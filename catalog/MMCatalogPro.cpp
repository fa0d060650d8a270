#include "catalog/MMCatalogPro.h"

#include "idl/host.h"

namespace qm::catalog {

STDMETHODIMP CMMCatalogPro::SupportsProject(IUnknown* project, VARIANT_BOOL* supported) {
  return AnswerSupportsProject(project, supported,
                               [](long kind) { return kind == ProjectKind_Script; });
}

}  // namespace qm::catalog
