#include "client/commands/NoModules.h"

#include "client/catalog/SearchedPlaces.h"
#include "client/terminal/Report.h"

namespace mmcat {

ExitCode RequireModules(size_t modules) {
  if (modules > 0) {
    return kSuccess;
  }
  PrintRemark("the catalog has no modules");
  PrintFoldersWithPackages();
  PrintSearchedPlaces();
  return kNothingMatched;
}

}  // namespace mmcat
