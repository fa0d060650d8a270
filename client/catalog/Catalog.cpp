#include "client/catalog/Catalog.h"

#include "client/catalog/Properties.h"
#include "idl/host.h"
#include "idl/qmmmupdater2.h"

namespace mmcat {

Catalog::Catalog() {
  const auto manager =
      CreateObject<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager, "QmMMUpdater2.dll");
  qm::common::ComPtr<IUnknown> catalog;
  ThrowIfFailed(manager->GetCatalog(ProjectKind_Installer, catalog.Put()));
  ThrowIfFailed(catalog.QueryInterface(m_catalog.Put()));
}

qm::common::ComPtr<IMergeModules> Catalog::Modules() const {
  return ReadObject<IMMCatalog>(*m_catalog.Get(), &IMMCatalog::get_MergeModules);
}

std::vector<std::string> Catalog::Keys() const {
  std::vector<std::string> keys;
  ForEachItem<IMergeModule>(*Modules(), [&](IMergeModule& module) {
    keys.push_back(ReadText(module, &IMergeModule::get_Key));
  });
  return keys;
}

qm::common::ComPtr<IMergeModules> Catalog::FindModules(const std::string& key,
                                                       const std::string& version) const {
  qm::common::ComPtr<IMergeModules> modules;
  long count = 0;
  ThrowIfFailed(m_catalog->FindModule(MakeArgument(key).Get(), MakeArgument(version).Get(), 0,
                                      modules.Put(), &count));
  return modules;
}

qm::common::ComPtr<IMMSources> Catalog::Sources() const {
  return ReadObject<IMMCatalog>(*m_catalog.Get(), &IMMCatalog::get_Sources);
}

std::string Catalog::FindDisplayName(const std::string& key) const {
  qm::common::UniqueBstr name;
  ThrowIfFailed(m_catalog->GetModuleDisplayName(MakeArgument(key).Get(), name.Put()));
  return qm::text::ToUtf8(qm::common::ViewOf(name.Get()));
}

}  // namespace mmcat
