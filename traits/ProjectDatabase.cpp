#include "traits/ProjectDatabase.h"

#include "msidb/View.h"

namespace msidb {

namespace {

bool HasProjectType(const Database& database, const wchar_t* type) {
  if (!database.HasTable(L"Quillmark")) {
    return false;
  }
  View view;
  return view.RunAndFetch(database, L"SELECT * FROM `Quillmark` WHERE `Property`='Type'") &&
         view.Row().GetString(2) == type;
}

}  // namespace

bool IsInstallerProject(const Database& database) { return HasProjectType(database, L"MSIE"); }

bool IsMergeModuleProject(const Database& database) { return HasProjectType(database, L"MSM"); }

}  // namespace msidb
