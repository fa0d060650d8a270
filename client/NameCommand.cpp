#include "client/NameCommand.h"

#include "client/Catalog.h"
#include "client/CatalogFacts.h"
#include "client/Properties.h"
#include "client/TextTable.h"

ExitCode Name(const std::string& key, const OutputOptions& output) {
  Report report("name", output);
  const Catalog catalog;
  const std::string displayName = catalog.DisplayName(key);
  const bool isKnown =
      displayName != key || Number(*catalog.Find(key, ""), &IMergeModules::get_Count) > 0;
  report.Document().update({{"key", key}, {"displayName", isKnown ? displayName : ""}});
  if (!isKnown) {
    RemarkUnknownKey(catalog.Keys(), key);
    return report.Finish(kNothingMatched);
  }
  report.Print(Printable(displayName) + '\n');
  return report.Finish();
}
