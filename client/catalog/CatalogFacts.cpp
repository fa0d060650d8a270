#include "client/catalog/CatalogFacts.h"

#include "client/catalog/Catalog.h"
#include "client/catalog/Properties.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Progress.h"
#include "merge/FileSearch.h"
#include "merge/JoinTexts.h"

namespace {

/// An exclusion has its language as text, a null cell as the text of kNullInteger.
std::optional<long> LanguageOf(IMMExclusion& exclusion) {
  const long language =
      std::strtol(Text(exclusion, &IMMExclusion::get_Language).c_str(), nullptr, 10);
  return language == kNullInteger ? std::nullopt : std::optional<long>(language);
}

std::vector<Requirement> ReadRequirements(IMergeModule& module) {
  std::vector<Requirement> requirements;
  ForEach<IMMDependency>(*Get(module, &IMergeModule::get_Dependencies),
                         [&](IMMDependency& dependency) {
                           requirements.push_back({Text(dependency, &IMMDependency::get_ModuleID),
                                                   Cell(dependency, &IMMDependency::get_Language),
                                                   Text(dependency, &IMMDependency::get_Version)});
                         });
  return requirements;
}

std::vector<Exclusion> ReadExclusions(IMergeModule& module) {
  std::vector<Exclusion> exclusions;
  ForEach<IMMExclusion>(*Get(module, &IMergeModule::get_Exclusions), [&](IMMExclusion& exclusion) {
    exclusions.push_back({Text(exclusion, &IMMExclusion::get_ModuleID), LanguageOf(exclusion),
                          Text(exclusion, &IMMExclusion::get_MinVersion),
                          Text(exclusion, &IMMExclusion::get_MaxVersion)});
  });
  return exclusions;
}

/// Reads the wanted tables of a module into the last elements of the lists.
void ReadTables(IMergeModule& module, unsigned facts, CatalogFacts& catalog) {
  if (facts & kRequirements) {
    catalog.merge.back().requirements = ReadRequirements(module);
  }
  if (facts & kExclusions) {
    catalog.details.back().exclusions = ReadExclusions(module);
  }
  if (facts & kFiles) {
    catalog.details.back().files = ReadFiles(module);
  }
}

}  // namespace

std::vector<DeliveredFile> ReadFiles(IMergeModule& module) {
  std::vector<DeliveredFile> files;
  ForEach<IMMFile>(*Get(module, &IMergeModule::get_Files), [&](IMMFile& file) {
    files.push_back(
        MakeDeliveredFile(Text(file, &IMMFile::get_FileName), Text(file, &IMMFile::get_Directory),
                          Text(file, &IMMFile::get_Key), Text(file, &IMMFile::get_Version),
                          Cell(file, &IMMFile::get_FileSize)));
  });
  return files;
}

CatalogFacts ReadCatalogFacts(unsigned facts, Report& report) {
  CatalogFacts catalog;
  Progress progress;
  const CComPtr<IMergeModules> modules = Catalog().Modules();
  progress.SetTotal(static_cast<size_t>(Number(*modules, &IMergeModules::get_Count)));
  ForEach<IMergeModule>(*modules, [&](IMergeModule& module) {
    progress.Step();
    catalog.modules.push_back(ReadModule(module));
    const ListedModule& listed = catalog.modules.back();
    catalog.merge.push_back({listed.key, listed.moduleId, listed.language, listed.version, {}});
    catalog.details.emplace_back();
    catalog.details.back().path = listed.path;
    try {
      ReadTables(module, facts, catalog);
    } catch (const ServerFailure& failure) {
      catalog.details.back().failure = failure.what();
      report.AddFailure(listed.path, "", failure.Result(), failure.what());
    }
  });
  return catalog;
}

std::vector<std::string> KeysOf(const std::vector<ListedModule>& modules) {
  std::vector<std::string> keys;
  keys.reserve(modules.size());
  for (const ListedModule& module : modules) {
    keys.push_back(module.key);
  }
  return keys;
}

void RemarkUnknownKey(const std::vector<std::string>& keys, const std::string& key) {
  const std::vector<std::string> nearest = NearestNames(key, keys);
  PrintRemark(key + ": the catalog has no such module" +
              (nearest.empty() ? "" : "; did you mean " + JoinTexts(nearest, " or ")));
}
