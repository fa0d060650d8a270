#include "analysis/ModuleRows.h"

#include "analysis/ModuleItem.h"
#include "analysis/SetCollection.h"
#include "analysis/SetModuleUser.h"
#include "merge/CustomActionType.h"
#include "merge/Findings.h"
#include "merge/MergePlan.h"

namespace qm::analysis {

void SetComponent::Init(SharedSet set, size_t module, const merge::Component& component) noexcept {
  m_set = std::move(set);
  m_module = module;
  m_component = &component;
}

STDMETHODIMP SetComponent::get_Key(BSTR* value) { return AnswerUtf8(value, m_component->key); }
STDMETHODIMP SetComponent::get_ComponentID(BSTR* value) {
  return AnswerUtf8(value, m_component->componentId);
}
STDMETHODIMP SetComponent::get_Directory(BSTR* value) {
  return AnswerUtf8(value, m_component->directory);
}
STDMETHODIMP SetComponent::get_TargetPath(BSTR* value) {
  return AnswerText(value, [&] {
    return text::ToWide(m_set->SpellTargetPath(m_module, m_component->directory));
  });
}
STDMETHODIMP SetComponent::get_Attributes(long* value) {
  return AnswerNumber(value, m_component->attributes);
}
STDMETHODIMP SetComponent::get_Is64Bit(VARIANT_BOOL* value) {
  return AnswerFlag(value, m_component->Is64Bit());
}
STDMETHODIMP SetComponent::get_Condition(BSTR* value) {
  return AnswerUtf8(value, m_component->condition);
}
STDMETHODIMP SetComponent::get_KeyPath(BSTR* value) {
  return AnswerUtf8(value, m_component->keyPath);
}

void SetCustomAction::Init(SharedSet set, const merge::CustomAction& action) noexcept {
  m_set = std::move(set);
  m_action = &action;
}

STDMETHODIMP SetCustomAction::get_Name(BSTR* value) { return AnswerUtf8(value, m_action->name); }
STDMETHODIMP SetCustomAction::get_Type(long* value) { return AnswerNumber(value, m_action->type); }
STDMETHODIMP SetCustomAction::get_Source(BSTR* value) {
  return AnswerUtf8(value, m_action->source);
}
STDMETHODIMP SetCustomAction::get_Target(BSTR* value) {
  return AnswerUtf8(value, m_action->target);
}
STDMETHODIMP SetCustomAction::get_Description(BSTR* value) {
  return AnswerText(value,
                    [&] { return text::ToWide(merge::DescribeCustomActionType(m_action->type)); });
}

void SetRequirement::Init(SharedSet set, size_t module, merge::Requirement requirement) noexcept {
  m_set = std::move(set);
  m_module = module;
  m_requirement = std::move(requirement);
}

merge::Choice SetRequirement::Choose() const {
  const merge::Module& module = m_set->ModuleAt(m_module);
  return merge::IsMetWithin(module, m_requirement) ? merge::Choice()
                                                   : m_set->Index().Choose(m_requirement, module);
}

STDMETHODIMP SetRequirement::get_Key(BSTR* value) {
  return AnswerText(value, [&] { return text::ToWide(MakeRequiredKey(m_requirement)); });
}
STDMETHODIMP SetRequirement::get_ModuleID(BSTR* value) {
  return AnswerUtf8(value, m_requirement.moduleId);
}
STDMETHODIMP SetRequirement::get_Language(long* value) {
  return AnswerNumber(value, m_requirement.language);
}
STDMETHODIMP SetRequirement::get_Version(BSTR* value) {
  return AnswerUtf8(value, m_requirement.version);
}
STDMETHODIMP SetRequirement::get_CarriedFrom(BSTR* value) {
  return AnswerUtf8(value, m_requirement.carriedFrom);
}
STDMETHODIMP SetRequirement::get_IsMetWithin(VARIANT_BOOL* value) {
  return Answer(value, [&] {
    return merge::IsMetWithin(m_set->ModuleAt(m_module), m_requirement) ? VARIANT_TRUE
                                                                        : VARIANT_FALSE;
  });
}
STDMETHODIMP SetRequirement::get_SatisfiedBy(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, Choose().module); });
}
STDMETHODIMP SetRequirement::get_Reason(BSTR* value) {
  return AnswerText(value, [&] { return text::ToWide(Choose().reason); });
}

STDMETHODIMP SetRequirement::get_Text(BSTR* value) {
  return AnswerText(value, [&] { return text::ToWide(merge::FormatRequirement(m_requirement)); });
}

void SetExclusion::Init(SharedSet set, const ModuleExclusion& row) noexcept {
  m_set = std::move(set);
  m_row = row;
}

STDMETHODIMP SetExclusion::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_row.module); });
}
STDMETHODIMP SetExclusion::get_Key(BSTR* value) {
  return AnswerText(value, [&] {
    return text::ToWide(
        merge::MakeModuleKey(m_row.exclusion->moduleId, m_row.exclusion->language.value_or(0)));
  });
}
STDMETHODIMP SetExclusion::get_ModuleID(BSTR* value) {
  return AnswerUtf8(value, m_row.exclusion->moduleId);
}
STDMETHODIMP SetExclusion::get_Language(long* value) {
  return AnswerNumber(value, m_row.exclusion->language);
}
STDMETHODIMP SetExclusion::get_MinVersion(BSTR* value) {
  return AnswerUtf8(value, m_row.exclusion->minVersion);
}
STDMETHODIMP SetExclusion::get_MaxVersion(BSTR* value) {
  return AnswerUtf8(value, m_row.exclusion->maxVersion);
}
STDMETHODIMP SetExclusion::get_CarriedFrom(BSTR* value) {
  return AnswerUtf8(value, m_row.exclusion->carriedFrom);
}
STDMETHODIMP SetExclusion::get_ExcludedModules(ISetModules** value) {
  return Answer(value, [&] {
    return MakeModules(m_set,
                       merge::FindExcludedModules(m_set->Index(), m_row.module, *m_row.exclusion));
  });
}

STDMETHODIMP SetExclusion::get_BroughtInBy(IModuleUsers** value) {
  return Answer(value, [&] { return MakeUsers(m_set, m_set->Users().Find({m_row.module})); });
}

ISetExclusions* MakeExclusions(const SharedSet& set, std::vector<ModuleExclusion> rows) {
  const auto shared = std::make_shared<const std::vector<ModuleExclusion>>(std::move(rows));
  return MakeCollection<ISetExclusions, ISetExclusion>(
      shared->size(),
      [set, shared](size_t at) { return com::MakeObject<SetExclusion>(set, (*shared)[at]); },
      [shared](size_t at) {
        const merge::Exclusion& exclusion = *(*shared)[at].exclusion;
        return merge::MakeModuleKey(exclusion.moduleId, exclusion.language.value_or(0));
      });
}

std::string MakeRequiredKey(const merge::Requirement& requirement) {
  return merge::MakeModuleKey(requirement.moduleId, requirement.language.value_or(0));
}

}  // namespace qm::analysis
