#include <iterator>

#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "module/MergeModule.h"
#include "server/app/QMMMUpdaterApp.h"
#include "server/app/Resource.h"
#include "server/frame/ComObject.h"

const ObjectMap& ServerObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_MergeModule2, L"QmMMUpdater.MergeModule2.1", L"QmMMUpdater.MergeModule2",
       IDS_CLASS_DESCRIPTION, &CreateComObject<CMergeModule>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QMMMUPDATER2Lib,
                             &LIBID_QMMMUpdaterLib, L"qmmmupdater.tlb"};
  return map;
}
