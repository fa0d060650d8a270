#include "client/catalog/ModuleSet.h"

#include <algorithm>
#include <climits>

#include "client/catalog/Catalog.h"
#include "client/catalog/Object.h"
#include "client/catalog/Properties.h"
#include "client/catalog/Value.h"
#include "client/terminal/Progress.h"

namespace mmcat {

namespace {

using qm::common::ComPtr;

/// The position of a module that an object of the set returned; no value for Nothing.
std::optional<size_t> PositionOf(const ComPtr<ISetModule>& module) {
  return module ? std::optional<size_t>(ReadNumber(*module, &ISetModule::get_Number) - 1)
                : std::nullopt;
}

template <class Interface>
std::optional<size_t> ReadOptionalPosition(
    Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(ISetModule**)) {
  return PositionOf(ReadObject(object, property));
}

template <class Interface>
size_t ReadPosition(Interface& object,
                    HRESULT (STDMETHODCALLTYPE Interface::*property)(ISetModule**)) {
  return ReadOptionalPosition(object, property).value();
}

std::vector<size_t> ReadPositions(ISetModules& modules, long most = LONG_MAX) {
  std::vector<size_t> positions;
  const auto read = [&](ISetModule& module) {
    positions.push_back(*PositionOf(ComPtr<ISetModule>(&module)));
  };
  ForEachItem<ISetModule>(modules, read, most);
  return positions;
}

/// Reads only the beginning of a long chain. Every module in it is a user with a chain of its own,
/// so together these chains are far longer than the set.
UserFacts ReadUser(IModuleUser& user) {
  constexpr long kMostInChain = 32;
  const auto chain = ReadObject(user, &IModuleUser::get_Chain);
  return {ReadPosition(user, &IModuleUser::get_Module),
          ReadPosition(user, &IModuleUser::get_Through), ReadPositions(*chain, kMostInChain),
          static_cast<size_t>(ReadNumber(*chain, &ISetModules::get_Count))};
}

ModuleFacts ReadModuleFacts(ISetModule& module) {
  return {ReadText(module, &ISetModule::get_Key),
          ReadText(module, &ISetModule::get_ModuleID),
          ReadText(module, &ISetModule::get_Version),
          ReadDisplayName(module, &ISetModule::get_Path),
          ReadText(module, &ISetModule::get_PackageCode),
          ReadPath(module, &ISetModule::get_Path),
          ReadFlag(module, &ISetModule::get_IsFromGallery),
          ReadFlag(module, &ISetModule::get_IsPresent),
          ComPtr<ISetModule>(&module)};
}

std::vector<FileFacts> ReadFiles(ISetFiles& files) {
  std::vector<FileFacts> list;
  ForEachItem<ISetFile>(files, [&](ISetFile& file) {
    list.push_back(
        {ReadPosition(file, &ISetFile::get_Module), ReadText(file, &ISetFile::get_Key),
         ReadText(file, &ISetFile::get_Name), ReadText(file, &ISetFile::get_ShortName),
         ReadText(file, &ISetFile::get_Directory), ReadText(file, &ISetFile::get_TargetPath),
         ReadFlag(file, &ISetFile::get_IsRedirected), ReadOptionalNumber(file, &ISetFile::get_Size),
         ReadText(file, &ISetFile::get_Version), ReadText(file, &ISetFile::get_Language),
         ReadOptionalNumber(file, &ISetFile::get_Sequence)});
  });
  return list;
}

RequirementFacts ReadRequirement(ISetRequirement& requirement) {
  return {ReadText(requirement, &ISetRequirement::get_Key),
          ReadText(requirement, &ISetRequirement::get_Text),
          ReadText(requirement, &ISetRequirement::get_ModuleID),
          ReadOptionalNumber(requirement, &ISetRequirement::get_Language),
          ReadText(requirement, &ISetRequirement::get_Version),
          ReadText(requirement, &ISetRequirement::get_CarriedFrom),
          ReadFlag(requirement, &ISetRequirement::get_IsMetWithin),
          ReadOptionalPosition(requirement, &ISetRequirement::get_SatisfiedBy)};
}

std::vector<ExclusionFacts> ReadExclusions(ISetExclusions& exclusions) {
  std::vector<ExclusionFacts> list;
  ForEachItem<ISetExclusion>(exclusions, [&](ISetExclusion& exclusion) {
    list.push_back({ReadPosition(exclusion, &ISetExclusion::get_Module),
                    ReadText(exclusion, &ISetExclusion::get_Key),
                    ReadText(exclusion, &ISetExclusion::get_ModuleID),
                    ReadOptionalNumber(exclusion, &ISetExclusion::get_Language),
                    ReadText(exclusion, &ISetExclusion::get_MinVersion),
                    ReadText(exclusion, &ISetExclusion::get_MaxVersion),
                    ReadText(exclusion, &ISetExclusion::get_CarriedFrom),
                    ReadPositions(*ReadObject(exclusion, &ISetExclusion::get_ExcludedModules))});
  });
  return list;
}

std::vector<std::string> ReadTexts(ISetFinding& finding,
                                   HRESULT (STDMETHODCALLTYPE ISetFinding::*property)(VARIANT*)) {
  Value texts;
  ThrowIfFailed((finding.*property)(&texts.Get()));
  return texts.Texts();
}

FindingFacts ReadFinding(ISetFinding& finding) {
  FindingFacts facts;
  facts.code = ReadText(finding, &ISetFinding::get_Code);
  facts.severity = ReadText(finding, &ISetFinding::get_Severity);
  facts.mergeErrorType = ReadNumber(finding, &ISetFinding::get_MergeErrorType);
  facts.text = SpellPathsIn(ReadText(finding, &ISetFinding::get_Text));
  facts.moduleKeys = ReadTexts(finding, &ISetFinding::get_ModuleKeys);
  for (std::string& key : facts.moduleKeys) {
    key = SpellPath(key);  // a module without a key has its path
  }
  facts.modules = ReadPositions(*ReadObject(finding, &ISetFinding::get_Modules));
  if (const auto required = ReadObject(finding, &ISetFinding::get_Required)) {
    facts.required = ReadRequirement(*required);
  }
  facts.file = ReadText(finding, &ISetFinding::get_File);
  facts.folder = ReadText(finding, &ISetFinding::get_Folder);
  facts.table = ReadText(finding, &ISetFinding::get_Table);
  facts.key = ReadText(finding, &ISetFinding::get_RowKey);
  facts.versions = ReadTexts(finding, &ISetFinding::get_Versions);
  ForEachItem<ISetFindingValue>(
      *ReadObject(finding, &ISetFinding::get_Values), [&](ISetFindingValue& value) {
        facts.values.push_back({ReadOptionalPosition(value, &ISetFindingValue::get_Module),
                                ReadText(value, &ISetFindingValue::get_Column),
                                ReadText(value, &ISetFindingValue::get_Value)});
      });
  return facts;
}

/// Shows the progress that the set component reports.
class ProgressFunction final : public DispatchObject<IDispatch> {
 public:
  explicit ProgressFunction(Progress& progress) : m_progress(progress) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override { return Query<IDispatch>(iid, out); }

  STDMETHOD(Invoke)
  (DISPID, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) override {
    m_progress.ShowModule(arguments->rgvarg[1].lVal, arguments->rgvarg[0].lVal);
    return S_OK;
  }

 private:
  Progress& m_progress;
};

ComPtr<IDispatch> MakeProgressFunction(Progress& progress) {
  return ComPtr<IDispatch>::Adopt(new ProgressFunction(progress));
}

}  // namespace

ModuleSet::ModuleSet() { Load(*Catalog().Object()); }

ModuleSet::ModuleSet(ModuleObjects modules) { Load(*MakeModuleCollection(std::move(modules))); }

void ModuleSet::Load(IDispatch& source) {
  Progress progress;
  m_set = CreateObject<IMergeSet>(CLSID_MergeSet, "QmMergeSet.dll");
  if (progress.IsShown()) {
    VARIANT function;
    const ComPtr<IDispatch> object = MakeProgressFunction(progress);
    function.vt = VT_DISPATCH;
    function.pdispVal = object.Get();
    ThrowIfFailed(m_set->ReportProgressTo(function));
  }
  ThrowIfFailed(m_set->Load(&source));
  ThrowIfFailed(m_set->ReportProgressTo(VARIANT{}));
  ForEachItem<ISetModule>(*ReadObject(*m_set, &IMergeSet::get_Modules), [&](ISetModule& module) {
    m_modules.push_back(ReadModuleFacts(module));
  });
}

const std::vector<NamedModule>& ModuleSet::Names() const {
  if (m_names.empty()) {
    m_names.reserve(m_modules.size());
    for (const ModuleFacts& module : m_modules) {
      m_names.push_back({module.key, module.moduleId, module.path, module.displayName});
    }
  }
  return m_names;
}

void ModuleSet::AddFailures(FailuresOf files, Report& report) const {
  ForEachItem<ISetFailure>(
      *ReadObject(*m_set, &IMergeSet::get_Failures), [&](ISetFailure& failure) {
        if (files == FailuresOf::ModulesAndIndexes ||
            ReadObject(failure, &ISetFailure::get_Module)) {
          report.AddFailure({ReadPath(failure, &ISetFailure::get_Path), "",
                             ReadNumber(failure, &ISetFailure::get_Code),
                             SpellPathsIn(ReadText(failure, &ISetFailure::get_Text))});
        }
      });
}

std::vector<size_t> ModuleSet::FindByKey(const std::string& key) const {
  ComPtr<ISetModules> modules;
  ThrowIfFailed(m_set->FindModules(MakeArgument(key).Get(), modules.Put()));
  return ReadPositions(*modules);
}

std::vector<size_t> ModuleSet::FindModules(const std::string& word) const {
  std::vector<size_t> found = FindByKey(word);
  return found.empty() ? FindNamed(Names(), word) : found;
}

std::vector<std::string> ModuleSet::ResolveKeys(const std::vector<std::string>& words) const {
  std::vector<std::string> keys;
  for (const std::string& word : words) {
    if (!FindByKey(word).empty()) {
      keys.push_back(word);
      continue;
    }
    const std::vector<size_t> named = FindNamed(Names(), word);
    for (const size_t position : named) {
      // Other folders may have modules with the same key.
      const std::string path = ReadText(*m_modules[position].object, &ISetModule::get_Path);
      keys.push_back(path.empty() ? m_modules[position].key : path);
    }
    if (named.empty()) {
      keys.push_back(word);  // the set component says what is wrong with it
    }
  }
  return keys;
}

CheckFacts ModuleSet::Check(const std::vector<std::string>& words) const {
  Value argument = words.empty() ? Value() : Value(ResolveKeys(words));
  ComPtr<ISetFindings> findings;
  ThrowIfFailed(m_set->Check(argument.Get(), findings.Put()));
  CheckFacts facts{ReadPositions(*ReadObject(*findings, &ISetFindings::get_CheckedModules)), {}};
  ForEachItem<ISetFinding>(
      *findings, [&](ISetFinding& finding) { facts.findings.push_back(ReadFinding(finding)); });
  return facts;
}

PlanFacts ModuleSet::Plan(const std::vector<std::string>& words) const {
  Value argument(ResolveKeys(words));
  ComPtr<IMergePlan> plan;
  ThrowIfFailed(m_set->Plan(argument.Get(), plan.Put()));
  PlanFacts facts;
  ForEachItem<IPlannedModule>(
      *ReadObject(*plan, &IMergePlan::get_Modules), [&](IPlannedModule& planned) {
        facts.modules.push_back(
            {ReadPosition(planned, &IPlannedModule::get_Module),
             ReadOptionalPosition(planned, &IPlannedModule::get_NeededBy),
             ReadText(planned, &IPlannedModule::get_Reason),
             ReadPositions(*ReadObject(planned, &IPlannedModule::get_Alternatives)),
             ReadPositions(*ReadObject(planned, &IPlannedModule::get_Needs))});
      });
  ForEachItem<IMissingModule>(
      *ReadObject(*plan, &IMergePlan::get_Missing), [&](IMissingModule& missing) {
        facts.missing.push_back(
            {ReadPosition(missing, &IMissingModule::get_NeededBy),
             ReadRequirement(*ReadObject(missing, &IMissingModule::get_Requirement)),
             ReadText(missing, &IMissingModule::get_Reason)});
      });
  ForEachItem<ISetModules>(*ReadObject(*plan, &IMergePlan::get_Cycles), [&](ISetModules& cycle) {
    facts.cycles.push_back(ReadPositions(cycle));
  });
  facts.isProven = ReadFlag(*plan, &IMergePlan::get_IsProven);
  facts.object = std::move(plan);
  return facts;
}

std::vector<ConflictFacts> ModuleSet::ConflictsOf(const PlanFacts& plan) const {
  std::vector<ConflictFacts> list;
  ForEachItem<IPlanConflict>(
      *ReadObject(*plan.object, &IMergePlan::get_Conflicts), [&](IPlanConflict& conflict) {
        ConflictFacts facts{SpellPathsIn(ReadText(conflict, &IPlanConflict::get_Text)),
                            ReadPositions(*ReadObject(conflict, &IPlanConflict::get_Modules)),
                            {},
                            {},
                            ReadFlag(conflict, &IPlanConflict::get_IsMinimal)};
        ForEachItem<ISetModules>(
            *ReadObject(conflict, &IPlanConflict::get_Chains),
            [&](ISetModules& chain) { facts.chains.push_back(ReadPositions(chain)); });
        ForEachItem<IPlanFix>(*ReadObject(conflict, &IPlanConflict::get_Fixes), [&](IPlanFix& fix) {
          facts.fixes.push_back({SpellPathsIn(ReadText(fix, &IPlanFix::get_Text)),
                                 ReadPositions(*ReadObject(fix, &IPlanFix::get_Drop)),
                                 ReadPositions(*ReadObject(fix, &IPlanFix::get_Modules))});
        });
        list.push_back(std::move(facts));
      });
  return list;
}

std::vector<RequirementFacts> ModuleSet::RequirementsOf(size_t module) const {
  std::vector<RequirementFacts> list;
  ForEachItem<ISetRequirement>(
      *ReadObject(*m_modules[module].object, &ISetModule::get_Requirements),
      [&](ISetRequirement& requirement) { list.push_back(ReadRequirement(requirement)); });
  return list;
}

std::vector<UserFacts> ModuleSet::UsersOf(size_t module) const {
  std::vector<UserFacts> list;
  ForEachItem<IModuleUser>(*ReadObject(*m_modules[module].object, &ISetModule::get_Users),
                           [&](IModuleUser& user) { list.push_back(ReadUser(user)); });
  return list;
}

std::vector<ExclusionFacts> ModuleSet::Exclusions() const {
  ComPtr<ISetExclusions> exclusions;
  ThrowIfFailed(m_set->ExclusionsOf(nullptr, exclusions.Put()));
  return ReadExclusions(*exclusions);
}

std::vector<ExclusionFacts> ModuleSet::ExclusionsOf(size_t module) const {
  return ReadExclusions(*ReadObject(*m_modules[module].object, &ISetModule::get_Exclusions));
}

std::vector<FileFacts> ModuleSet::FindFiles(const std::string& pattern) const {
  ComPtr<ISetFiles> files;
  ThrowIfFailed(m_set->FindFiles(MakeArgument(pattern).Get(), files.Put()));
  return ReadFiles(*files);
}

std::vector<FileFacts> ModuleSet::FilesOf(size_t module) const {
  return ReadFiles(*ReadObject(*m_modules[module].object, &ISetModule::get_Files));
}

std::vector<DelivererFacts> ModuleSet::FindDeliverers(const std::string& fileName) const {
  ComPtr<IFileDeliverers> deliverers;
  ThrowIfFailed(m_set->FindDeliverers(MakeArgument(fileName).Get(), deliverers.Put()));
  std::vector<DelivererFacts> list;
  ForEachItem<IFileDeliverer>(*deliverers, [&](IFileDeliverer& deliverer) {
    list.push_back({ReadText(deliverer, &IFileDeliverer::get_FileName),
                    ReadText(deliverer, &IFileDeliverer::get_ModuleKey),
                    ReadOptionalPosition(deliverer, &IFileDeliverer::get_Module),
                    ReadFiles(*ReadObject(deliverer, &IFileDeliverer::get_Files)),
                    ReadText(deliverer, &IFileDeliverer::get_IndexFile),
                    ReadText(deliverer, &IFileDeliverer::get_Problem)});
  });
  return list;
}

std::vector<DescriptionFacts> ModuleSet::Descriptions() const {
  std::vector<DescriptionFacts> list;
  ForEachItem<IGalleryDescription>(
      *ReadObject(*m_set, &IMergeSet::get_GalleryDescriptions),
      [&](IGalleryDescription& description) {
        list.push_back({ReadPath(description, &IGalleryDescription::get_Path),
                        ReadText(description, &IGalleryDescription::get_PackageCode),
                        ReadText(description, &IGalleryDescription::get_ModuleID),
                        ReadText(description, &IGalleryDescription::get_Key),
                        ReadText(description, &IGalleryDescription::get_Version),
                        {}});
        const HRESULT code = ReadNumber(description, &IGalleryDescription::get_FailureCode);
        if (FAILED(code)) {
          list.back().failure.emplace(
              code, SpellPathsIn(ReadText(description, &IGalleryDescription::get_Failure)));
        }
      });
  return list;
}

}  // namespace mmcat
