#include "catalog/MMCatalogPro.h"

STDMETHODIMP CMMCatalogPro::SupportsProject(IUnknown* project, VARIANT_BOOL* supported) {
  return AnswerSupportsProject(project, supported, [](long kind) { return kind == 9; });
}
