#pragma once

#include <vector>

#include "analysis/SetObject.h"

namespace qm::analysis {

/// A row of a Component table.
class SetComponent : public SetObject<ISetComponent> {
 public:
  void Init(SharedSet set, size_t module, const merge::Component& component) noexcept;

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ComponentID)(BSTR* value) override;
  STDMETHOD(get_Directory)(BSTR* value) override;
  STDMETHOD(get_TargetPath)(BSTR* value) override;
  STDMETHOD(get_Attributes)(long* value) override;
  STDMETHOD(get_Is64Bit)(VARIANT_BOOL* value) override;
  STDMETHOD(get_Condition)(BSTR* value) override;
  STDMETHOD(get_KeyPath)(BSTR* value) override;

 private:
  SharedSet m_set;
  size_t m_module = 0;
  const merge::Component* m_component = nullptr;
};

/// A row of a CustomAction table.
class SetCustomAction : public SetObject<ISetCustomAction> {
 public:
  void Init(SharedSet set, const merge::CustomAction& action) noexcept;

  STDMETHOD(get_Name)(BSTR* value) override;
  STDMETHOD(get_Type)(long* value) override;
  STDMETHOD(get_Source)(BSTR* value) override;
  STDMETHOD(get_Target)(BSTR* value) override;
  STDMETHOD(get_Description)(BSTR* value) override;

 private:
  SharedSet m_set;
  const merge::CustomAction* m_action = nullptr;
};

/// A row of a ModuleDependency table.
class SetRequirement : public SetObject<ISetRequirement> {
 public:
  void Init(SharedSet set, size_t module, merge::Requirement requirement) noexcept;

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Language)(long* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_CarriedFrom)(BSTR* value) override;
  STDMETHOD(get_IsMetWithin)(VARIANT_BOOL* value) override;
  STDMETHOD(get_SatisfiedBy)(ISetModule** value) override;
  STDMETHOD(get_Reason)(BSTR* value) override;
  STDMETHOD(get_Text)(BSTR* value) override;

 private:
  /// Chooses the module that satisfies it best.
  merge::Choice Choose() const;

  SharedSet m_set;
  size_t m_module = 0;
  merge::Requirement m_requirement;
};

/// A row of the ModuleExclusion table of the module at a position.
struct ModuleExclusion {
  size_t module;
  const merge::Exclusion* exclusion;
};

class SetExclusion : public SetObject<ISetExclusion> {
 public:
  void Init(SharedSet set, const ModuleExclusion& row) noexcept;

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Language)(long* value) override;
  STDMETHOD(get_MinVersion)(BSTR* value) override;
  STDMETHOD(get_MaxVersion)(BSTR* value) override;
  STDMETHOD(get_CarriedFrom)(BSTR* value) override;
  STDMETHOD(get_ExcludedModules)(ISetModules** value) override;
  STDMETHOD(get_BroughtInBy)(IModuleUsers** value) override;

 private:
  SharedSet m_set;
  ModuleExclusion m_row{};
};

/// Makes a collection of exclusions of modules of the set.
ISetExclusions* MakeExclusions(const SharedSet& set, std::vector<ModuleExclusion> rows);

/// Returns the key of a required module, with 0 for a language that is null.
std::string MakeRequiredKey(const merge::Requirement& requirement);

}  // namespace qm::analysis
