#include <iterator>

#include "catalog/MMCatalog.h"
#include "catalog/MMCatalogManager.h"
#include "catalog/MMCatalogPro.h"
#include "com/frame/ComObject.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "module/MergeModule.h"
#include "server/QMMMUpdaterApp.h"
#include "server/Resource.h"

namespace qm::server {

const com::ObjectMap& GetServerObjects() noexcept {
  static const com::ObjectMapEntry entries[] = {
      {&CLSID_MMCatalog, L"QmMMUpdater.MMCatalog.1", L"QmMMUpdater.MMCatalog",
       IDS_CLASS_DESCRIPTION, &com::CreateComObject<catalog::CMMCatalog>},
      {&CLSID_MMCatalogPro, L"QmMMUpdater.MMCatalogPro.1", L"QmMMUpdater.MMCatalogPro",
       IDS_CLASS_DESCRIPTION, &com::CreateComObject<catalog::CMMCatalogPro>},
      {&CLSID_MergeModule2, L"QmMMUpdater.MergeModule2.1", L"QmMMUpdater.MergeModule2",
       IDS_CLASS_DESCRIPTION, &com::CreateComObject<module::CMergeModule>},
      {&CLSID_MMCatalogManager, L"QmMMUpdater.MMCatalogManager.1", L"QmMMUpdater.MMCatalogManager",
       IDS_CLASS_DESCRIPTION, &com::CreateComObject<catalog::CMMCatalogManager>},
  };
  static const com::ObjectMap map{entries, std::size(entries), &LIBID_QMMMUPDATER2Lib,
                                  &LIBID_QMMMUpdaterLib, L"qmmmupdater.tlb"};
  return map;
}

}  // namespace qm::server
