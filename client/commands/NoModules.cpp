#include "client/commands/NoModules.h"

#include "client/terminal/Report.h"

namespace mmcat {

ExitCode RequireModules(size_t modules) {
  if (modules > 0) {
    return kSuccess;
  }
  PrintRemark("the catalog has no modules");
  return kNothingMatched;
}

}  // namespace mmcat
