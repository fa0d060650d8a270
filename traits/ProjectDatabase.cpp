#include "traits/ProjectDatabase.h"

#include "msidb/View.h"

namespace qm::traits {

namespace {

bool HasProjectType(const msidb::Database& database, const wchar_t* type) {
  if (!database.HasTable(L"Quillmark")) {
    return false;
  }
  msidb::View view;
  return view.OpenAndFetch(database, L"SELECT * FROM `Quillmark` WHERE `Property`='Type'") &&
         view.Row().GetString(2) == type;
}

}  // namespace

bool IsInstallerProject(const msidb::Database& database) {
  return HasProjectType(database, L"MSIE");
}

bool IsMergeModuleProject(const msidb::Database& database) {
  return HasProjectType(database, L"MSM");
}

}  // namespace qm::traits
