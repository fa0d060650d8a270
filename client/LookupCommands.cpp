#include "client/LookupCommands.h"

#include "client/Catalog.h"
#include "client/Report.h"
#include "client/TextTable.h"

ExitCode Which(const std::string& fileName, bool json) {
  const Catalog catalog;
  const std::string key = catalog.ModuleForFile(fileName);
  const std::string displayName = key.empty() ? "" : catalog.DisplayName(key);
  Report report("which", json);
  report.Document().update({{"file", fileName}, {"key", key}, {"displayName", displayName}});
  if (!key.empty()) {
    report.Print(Printable(key) + "  " + Printable(displayName) + '\n');
  } else {
    PrintRemark(fileName + ": no module delivers it");
  }
  report.Finish();
  return key.empty() ? kNothingMatched : kSuccess;
}

ExitCode Name(const std::string& key, bool json) {
  const std::string displayName = Catalog().DisplayName(key);
  Report report("name", json);
  report.Document().update({{"key", key}, {"displayName", displayName}});
  report.Print(Printable(displayName) + '\n');
  return report.Finish();
}
