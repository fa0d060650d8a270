#include "client/catalog/Catalog.h"

#include "client/catalog/Properties.h"
#include "idl/host.h"
#include "idl/qmmmupdater2.h"
#include "text/Utf.h"

using qm::text::ToUtf8;
using qm::text::ToWide;

Catalog::Catalog() {
  const auto manager = Create<IMMCatalogManagerVelmora>(CLSID_MMCatalogManager, "QmMMUpdater2.dll");
  CComPtr<IUnknown> catalog;
  Check(manager->GetCatalog(ProjectKind_Installer, catalog.Put()));
  Check(catalog.QueryInterface(m_catalog.Put()));
}

CComPtr<IMergeModules> Catalog::Modules() const {
  return Get<IMMCatalog>(*m_catalog.Get(), &IMMCatalog::get_MergeModules);
}

std::vector<std::string> Catalog::Keys() const {
  std::vector<std::string> keys;
  ForEach<IMergeModule>(*Modules(), [&](IMergeModule& module) {
    keys.push_back(Text(module, &IMergeModule::get_Key));
  });
  return keys;
}

CComPtr<IMergeModules> Catalog::Find(const std::string& key, const std::string& version) const {
  CComPtr<IMergeModules> modules;
  long count = 0;
  Check(m_catalog->FindModule(Argument(ToWide(key)).Get(), Argument(ToWide(version)).Get(), 0,
                              modules.Put(), &count));
  return modules;
}

CComPtr<IMMSources> Catalog::Sources() const {
  return Get<IMMCatalog>(*m_catalog.Get(), &IMMCatalog::get_Sources);
}

std::string Catalog::ModuleForFile(const std::string& fileName) const {
  CUniqueBstr key;
  Check(m_catalog->GetModuleForFile(Argument(ToWide(fileName)).Get(), key.Put()));
  return ToUtf8(ViewOf(key.Get()));
}

std::string Catalog::DisplayName(const std::string& key) const {
  CUniqueBstr name;
  Check(m_catalog->GetModuleDisplayName(Argument(ToWide(key)).Get(), name.Put()));
  return ToUtf8(ViewOf(name.Get()));
}
