#include "client/catalog/CatalogFacts.h"

#include "client/catalog/Catalog.h"
#include "client/catalog/Properties.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Progress.h"
#include "merge/JoinTexts.h"

namespace mmcat {

namespace {

/// An exclusion has its language as text, a null cell as the text of kNullInteger.
std::optional<long> ReadExclusionLanguage(IMMExclusion& exclusion) {
  const long language =
      std::strtol(ReadText(exclusion, &IMMExclusion::get_Language).c_str(), nullptr, 10);
  return language == qm::common::kNullInteger ? std::nullopt : std::optional<long>(language);
}

std::vector<qm::merge::Requirement> ReadRequirements(IMergeModule& module) {
  std::vector<qm::merge::Requirement> requirements;
  ForEachItem<IMMDependency>(
      *ReadObject(module, &IMergeModule::get_Dependencies), [&](IMMDependency& dependency) {
        requirements.push_back({ReadText(dependency, &IMMDependency::get_ModuleID),
                                ReadOptionalNumber(dependency, &IMMDependency::get_Language),
                                ReadText(dependency, &IMMDependency::get_Version)});
      });
  return requirements;
}

std::vector<qm::merge::Exclusion> ReadExclusions(IMergeModule& module) {
  std::vector<qm::merge::Exclusion> exclusions;
  ForEachItem<IMMExclusion>(
      *ReadObject(module, &IMergeModule::get_Exclusions), [&](IMMExclusion& exclusion) {
        exclusions.push_back({ReadText(exclusion, &IMMExclusion::get_ModuleID),
                              ReadExclusionLanguage(exclusion),
                              ReadText(exclusion, &IMMExclusion::get_MinVersion),
                              ReadText(exclusion, &IMMExclusion::get_MaxVersion)});
      });
  return exclusions;
}

/// Reads the wanted tables of a module into the last elements of the lists.
void ReadTables(IMergeModule& module, unsigned facts, CatalogFacts& catalog) {
  if (facts & kRequirementTables) {
    catalog.mergeModules.back().requirements = ReadRequirements(module);
  }
  if (facts & kExclusionTables) {
    catalog.mergeModules.back().exclusions = ReadExclusions(module);
  }
  if (facts & kFileTables) {
    catalog.mergeModules.back().files = ReadFileTable(module, catalog.texts);
  }
}

}  // namespace

std::vector<qm::merge::DeliveredFile> ReadFileTable(IMergeModule& module,
                                                    std::deque<std::string>& texts) {
  std::vector<qm::merge::DeliveredFile> files;
  const auto keep = [&](std::string text) -> std::string_view {
    return texts.emplace_back(std::move(text));
  };
  ForEachItem<IMMFile>(*ReadObject(module, &IMergeModule::get_Files), [&](IMMFile& file) {
    files.push_back(qm::merge::MakeDeliveredFile(
        keep(ReadText(file, &IMMFile::get_FileName)), keep(ReadText(file, &IMMFile::get_Directory)),
        keep(ReadText(file, &IMMFile::get_Key)), keep(ReadText(file, &IMMFile::get_Version)),
        ReadOptionalNumber(file, &IMMFile::get_FileSize)));
  });
  return files;
}

CatalogFacts ReadCatalogFacts(unsigned facts, Report& report) {
  CatalogFacts catalog;
  Progress progress;
  const qm::common::ComPtr<IMergeModules> modules = Catalog().Modules();
  progress.SetTotal(static_cast<size_t>(ReadNumber(*modules, &IMergeModules::get_Count)));
  ForEachItem<IMergeModule>(*modules, [&](IMergeModule& module) {
    progress.CountModule();
    catalog.modules.push_back(ReadModule(module));
    const ListedModule& listed = catalog.modules.back();
    qm::merge::Module& merged = catalog.mergeModules.emplace_back();
    merged.key = listed.key;
    merged.moduleId = listed.moduleId;
    merged.language = listed.language;
    merged.version = listed.version;
    merged.path = listed.path;
    try {
      ReadTables(module, facts, catalog);
    } catch (const ServerFailure& failure) {
      merged.failure = failure.what();
      report.AddFailure(listed.path, "", failure.HResult(), failure.what());
    }
  });
  return catalog;
}

std::vector<std::string> CollectKeys(const std::vector<ListedModule>& modules) {
  std::vector<std::string> keys;
  keys.reserve(modules.size());
  for (const ListedModule& module : modules) {
    keys.push_back(module.key);
  }
  return keys;
}

void PrintUnknownKey(const std::vector<std::string>& keys, const std::string& key) {
  const std::vector<std::string> nearest = FindNearestNames(key, keys);
  PrintRemark(key + ": the catalog has no such module" +
              (nearest.empty() ? "" : "; did you mean " + qm::merge::JoinTexts(nearest, " or ")));
}

}  // namespace mmcat
