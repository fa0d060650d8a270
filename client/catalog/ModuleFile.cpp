#include "client/catalog/ModuleFile.h"

#include "client/catalog/PathSpelling.h"
#include "client/catalog/Properties.h"
#include "client/catalog/Value.h"
#include "common/Path.h"

namespace mmcat {

qm::common::ComPtr<IMergeModule2> OpenModuleFile(const std::string& path) {
  auto module = CreateObject<IMergeModule2>(CLSID_MergeModule2, "QmMMUpdater2.dll");
  ThrowIfFailed(module->Open(MakeArgument(qm::common::ResolveFullPath(ToSystemPath(path))).Get()));
  return module;
}

}  // namespace mmcat
