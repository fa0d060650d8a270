#include "analysis/ModuleItem.h"

#include "analysis/FileItem.h"
#include "analysis/ModuleRows.h"
#include "analysis/SetCollection.h"
#include "analysis/SetModuleUser.h"
#include "analysis/TableItems.h"

namespace qm::analysis {

void SetModule::Init(SharedSet set, size_t position) noexcept {
  m_set = std::move(set);
  m_position = position;
}

STDMETHODIMP SetModule::get_Key(BSTR* value) { return AnswerUtf8(value, Data().key); }
STDMETHODIMP SetModule::get_ModuleID(BSTR* value) { return AnswerUtf8(value, Data().moduleId); }
STDMETHODIMP SetModule::get_Language(long* value) { return AnswerNumber(value, Data().language); }
STDMETHODIMP SetModule::get_Version(BSTR* value) { return AnswerUtf8(value, Data().version); }
STDMETHODIMP SetModule::get_DisplayName(BSTR* value) {
  return AnswerUtf8(value, Data().displayName);
}
STDMETHODIMP SetModule::get_PackageCode(BSTR* value) {
  return AnswerUtf8(value, Data().packageCode);
}
STDMETHODIMP SetModule::get_Path(BSTR* value) { return AnswerUtf8(value, Data().path); }
STDMETHODIMP SetModule::get_Folder(BSTR* value) { return AnswerUtf8(value, Data().origin); }
STDMETHODIMP SetModule::get_Subject(BSTR* value) { return AnswerUtf8(value, Data().subject); }
STDMETHODIMP SetModule::get_Author(BSTR* value) { return AnswerUtf8(value, Data().author); }
STDMETHODIMP SetModule::get_Comments(BSTR* value) { return AnswerUtf8(value, Data().comments); }
STDMETHODIMP SetModule::get_Platform(BSTR* value) { return AnswerUtf8(value, Data().platform); }
STDMETHODIMP SetModule::get_MinimumInstaller(long* value) {
  return AnswerNumber(value, Data().minimumInstaller);
}
STDMETHODIMP SetModule::get_IsFromGallery(VARIANT_BOOL* value) {
  return AnswerFlag(value, Data().isFromGallery);
}
STDMETHODIMP SetModule::get_IsPresent(VARIANT_BOOL* value) {
  return AnswerFlag(value, Data().isPresent);
}
STDMETHODIMP SetModule::get_NeedsDownload(VARIANT_BOOL* value) {
  return AnswerFlag(value, Data().needsDownload);
}
STDMETHODIMP SetModule::get_Failure(BSTR* value) { return AnswerUtf8(value, Data().failure); }
STDMETHODIMP SetModule::get_Change(BSTR* value) { return AnswerUtf8(value, Data().change); }

STDMETHODIMP SetModule::get_MergeModule(IDispatch** value) {
  return Answer(value,
                [&] { return common::ComPtr<IDispatch>(m_set->ObjectAt(m_position)).Detach(); });
}

STDMETHODIMP SetModule::get_Files(ISetFiles** value) {
  return Answer(value, [&] {
    std::vector<merge::FoundFile> files;
    files.reserve(Data().files.size());
    for (const merge::DeliveredFile& file : Data().files) {
      files.push_back({m_position, &file});
    }
    return MakeFiles(m_set, std::move(files));
  });
}

STDMETHODIMP SetModule::get_Components(ISetComponents** value) {
  return Answer(value, [&] {
    return MakeCollection<ISetComponents, ISetComponent>(
        Data().components.size(),
        [set = m_set, module = m_position](size_t at) {
          return com::MakeObject<SetComponent>(set, module, set->ModuleAt(module).components[at]);
        },
        [set = m_set, module = m_position](size_t at) {
          return std::string(set->ModuleAt(module).components[at].key);
        });
  });
}

STDMETHODIMP SetModule::get_CustomActions(ISetCustomActions** value) {
  return Answer(value, [&] {
    return MakeCollection<ISetCustomActions, ISetCustomAction>(
        Data().customActions.size(),
        [set = m_set, module = m_position](size_t at) {
          return com::MakeObject<SetCustomAction>(set, set->ModuleAt(module).customActions[at]);
        },
        [set = m_set, module = m_position](size_t at) {
          return std::string(set->ModuleAt(module).customActions[at].name);
        });
  });
}

STDMETHODIMP SetModule::get_Requirements(ISetRequirements** value) {
  return Answer(value, [&] {
    return MakeCollection<ISetRequirements, ISetRequirement>(
        Data().requirements.size(),
        [set = m_set, module = m_position](size_t at) {
          return com::MakeObject<SetRequirement>(set, module,
                                                 set->ModuleAt(module).requirements[at]);
        },
        [set = m_set, module = m_position](size_t at) {
          return MakeRequiredKey(set->ModuleAt(module).requirements[at]);
        });
  });
}

STDMETHODIMP SetModule::get_Exclusions(ISetExclusions** value) {
  return Answer(value, [&] {
    std::vector<ModuleExclusion> exclusions;
    for (const merge::Exclusion& exclusion : Data().exclusions) {
      exclusions.push_back({m_position, &exclusion});
    }
    return MakeExclusions(m_set, std::move(exclusions));
  });
}

STDMETHODIMP SetModule::get_Tables(ISetTables** value) {
  return Answer(value, [&] { return MakeTables(Data().tables); });
}

STDMETHODIMP SetModule::get_Number(long* value) {
  return AnswerNumber(value, static_cast<long>(m_position) + 1);
}

STDMETHODIMP SetModule::get_Users(IModuleUsers** value) {
  return Answer(value, [&] { return MakeUsers(m_set, m_set->Users().Find({m_position})); });
}

ISetModule* MakeModule(const SharedSet& set, std::optional<size_t> position) {
  return position ? com::MakeObject<SetModule>(set, *position) : nullptr;
}

ISetModules* MakeModules(const SharedSet& set, std::vector<size_t> positions) {
  const auto shared = std::make_shared<const std::vector<size_t>>(std::move(positions));
  return MakeCollection<ISetModules, ISetModule>(
      shared->size(), [set, shared](size_t at) { return MakeModule(set, (*shared)[at]); },
      [set, shared](size_t at) { return set->ModuleAt((*shared)[at]).key; });
}

}  // namespace qm::analysis
