#include "client/catalog/Catalog.h"

#include "client/catalog/ModuleCollection.h"
#include "client/catalog/Properties.h"
#include "client/catalog/Value.h"
#include "idl/host.h"
#include "idl/qmmmupdater2.h"
#include "text/Fold.h"

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

std::vector<NamedModule> Catalog::Names() const {
  std::vector<NamedModule> names;
  ForEachItem<IMergeModule>(*Modules(), [&](IMergeModule& module) {
    names.push_back({ReadText(module, &IMergeModule::get_Key),
                     ReadText(module, &IMergeModule::get_ModuleID),
                     ReadPath(module, &IMergeModule::get_Path),
                     ReadText(module, &IMergeModule::get_DisplayName)});
  });
  return names;
}

qm::common::ComPtr<IMergeModules> Catalog::FindModules(const std::string& key,
                                                       const std::string& version) const {
  qm::common::ComPtr<IMergeModules> modules;
  long count = 0;
  ThrowIfFailed(m_catalog->FindModule(MakeArgument(key).Get(), MakeArgument(version).Get(), 0,
                                      modules.Put(), &count));
  return modules;
}

qm::common::ComPtr<IMergeModules> Catalog::FindNamedModules(const std::string& word,
                                                            const std::string& version) const {
  if (ReadNumber(*FindModules(word, ""), &IMergeModules::get_Count) > 0) {
    return FindModules(word, version);
  }
  const std::vector<size_t> positions = FindNamed(Names(), word);
  ModuleObjects found;
  const qm::common::ComPtr<IMergeModules> all = Modules();
  for (const size_t position : positions) {
    Value index(static_cast<long>(position) + 1);
    qm::common::ComPtr<IMergeModule> module;
    ThrowIfFailed(all->get_Item(index.Get(), module.Put()));
    if (version.empty() || qm::text::FoldCase(ReadText(*module, &IMergeModule::get_Version)) ==
                               qm::text::FoldCase(version)) {
      found.push_back(std::move(module));
    }
  }
  return MakeModuleCollection(std::move(found));
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
