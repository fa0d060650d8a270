#include "analysis/MergeSet.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <set>
#include <string>

#include "analysis/CheckOptions.h"
#include "analysis/FileDeliverer.h"
#include "analysis/FileItem.h"
#include "analysis/GalleryDescriptionItem.h"
#include "analysis/LoadSet.h"
#include "analysis/ModuleItem.h"
#include "analysis/ModuleRows.h"
#include "analysis/NotFound.h"
#include "analysis/SetCollection.h"
#include "analysis/SetFailure.h"
#include "analysis/SetFindings.h"
#include "analysis/SetModuleUser.h"
#include "analysis/SetPlan.h"
#include "com/error/Raise.h"
#include "com/frame/TextListArgument.h"
#include "common/Bstr.h"
#include "common/CollectionIndex.h"
#include "common/Path.h"

namespace qm::analysis {

namespace {

/// Returns whether a script left out an argument, or passed a variable without a value.
bool IsOmitted(const VARIANT& argument) noexcept {
  const VARIANT* const value = common::ResolveVariantReferences(&argument);
  return value &&
         (value->vt == VT_EMPTY || (value->vt == VT_ERROR && value->scode == DISP_E_PARAMNOTFOUND));
}

std::vector<size_t> AllPositions(const SetData& set) {
  std::vector<size_t> positions(set.Modules().size());
  std::iota(positions.begin(), positions.end(), size_t{0});
  return positions;
}

std::vector<merge::Finding> CheckModules(const SetData& set, const std::vector<size_t>& scope,
                                         merge::CheckedAs checkedAs) {
  merge::CheckOptions options = MakeCheckOptions(set);
  options.checkedAs = checkedAs;
  return merge::CheckModules(set.Index(), scope, options);
}

/// Returns the modules of a plan, which are those at `wanted` and what they need.
std::vector<size_t> AddNeeded(const SetData& set, const std::vector<size_t>& wanted) {
  std::vector<size_t> scope;
  for (const merge::PlannedModule& planned : PlanModules(set, wanted).modules) {
    scope.push_back(planned.module);
  }
  return scope;
}

/// Adds findings about the index files, and sorts all findings again.
void CheckIndexes(const SetData& set, std::vector<merge::Finding>& findings) {
  const IndexContents& indexes = set.Indexes();
  for (const auto* const entries : {&indexes.displayNames, &indexes.files}) {
    for (merge::Finding& finding : merge::CheckIndexes(set.Index(), *entries)) {
      findings.push_back(std::move(finding));
    }
  }
  for (const LoadFailure& failure : set.Failures()) {
    if (failure.module) {
      continue;  // CheckModules reports failures of modules
    }
    findings.push_back(merge::MakeFinding(merge::kUnreadableIndex,
                                          failure.path + " cannot be read: " + failure.text));
    findings.back().file = failure.path.substr(failure.path.find_last_of('\\') + 1);
  }
  merge::SortFindings(findings);
}

/// The modules of a set by their paths.
class PathIndex {
 public:
  explicit PathIndex(const SetData& set) {
    for (size_t position = 0; position < set.Modules().size(); ++position) {
      if (!set.ModuleAt(position).path.empty()) {
        m_paths.emplace_back(text::ToWide(set.ModuleAt(position).path), position);
      }
    }
    std::sort(m_paths.begin(), m_paths.end(), [](const Entry& a, const Entry& b) {
      const int order = common::CompareFileNames(a.first, b.first);
      return order < 0 || (order == 0 && a.second < b.second);
    });
  }

  /// Returns the positions of the modules with a path.
  std::vector<size_t> Find(std::wstring_view path) const {
    std::vector<size_t> positions;
    auto entry = std::lower_bound(m_paths.begin(), m_paths.end(), path,
                                  [](const Entry& one, std::wstring_view wanted) {
                                    return common::CompareFileNames(one.first, wanted) < 0;
                                  });
    for (; entry != m_paths.end() && common::CompareFileNames(entry->first, path) == 0; ++entry) {
      positions.push_back(entry->second);
    }
    return positions;
  }

 private:
  using Entry = std::pair<std::wstring, size_t>;

  std::vector<Entry> m_paths;
};

/// Returns the positions of the modules that a key or a full path names. Raises E_INVALIDARG if
/// there are none. Fills in `paths` at the first use.
std::vector<size_t> RequireModules(const SetData& set, std::wstring_view key,
                                   std::optional<PathIndex>& paths) {
  std::vector<size_t> positions = set.Index().FindByKey(text::ToUtf8(key));
  if (positions.empty()) {
    if (!paths) {
      paths.emplace(set);
    }
    positions = paths->Find(key);
  }
  if (positions.empty()) {
    RaiseNoModule(key);
  }
  return positions;
}

std::vector<size_t> RequireModules(const SetData& set, std::wstring_view key) {
  std::optional<PathIndex> paths;
  return RequireModules(set, key, paths);
}

/// Returns the same for several keys, each position once. Raises E_INVALIDARG if `keys` is empty.
std::vector<size_t> RequireModules(const SetData& set,
                                   const std::vector<common::WideString>& keys) {
  if (keys.empty()) {
    com::Raise(com_exception(E_INVALIDARG, L"The array has no module keys."));
  }
  std::vector<size_t> positions;
  std::set<size_t> seen;
  std::optional<PathIndex> paths;
  for (const common::WideString& key : keys) {
    for (const size_t position : RequireModules(set, std::wstring_view(key), paths)) {
      if (seen.insert(position).second) {
        positions.push_back(position);
      }
    }
  }
  return positions;
}

/// Reads a key or a list of keys. Call this before using the set, because an array object of a
/// script may run code that loads another set.
std::vector<common::WideString> ReadKeys(const VARIANT& keys) {
  return com::ParseTextList(keys, L"The argument is neither a module key nor an array of them.")
      .texts;
}

}  // namespace

const SharedSet& CMergeSet::RequireSet() const {
  if (!m_set) {
    com::Raise(com_exception(E_UNEXPECTED, L"No modules are loaded."));
  }
  return m_set;
}

STDMETHODIMP CMergeSet::Load(IDispatch* source) {
  return MethodBoundary([&]() -> HRESULT {
    if (!source) {
      return E_POINTER;
    }
    m_set = LoadSet(*source, std::make_shared<LoadProgress>(m_onProgress));
    return S_OK;
  });
}

STDMETHODIMP CMergeSet::get_Modules(ISetModules** modules) {
  return Answer(modules, [&] { return MakeModules(RequireSet(), AllPositions(*RequireSet())); });
}

STDMETHODIMP CMergeSet::Check(VARIANT modules, ISetFindings** findings) {
  return Answer(findings, [&] {
    const bool isWhole = IsOmitted(modules);
    const std::vector<common::WideString> keys =
        isWhole ? std::vector<common::WideString>() : ReadKeys(modules);
    const SharedSet set = RequireSet();
    std::vector<size_t> scope =
        isWhole ? AllPositions(*set) : AddNeeded(*set, RequireModules(*set, keys));
    std::vector<merge::Finding> found =
        CheckModules(*set, scope, isWhole ? merge::CheckedAs::Catalog : merge::CheckedAs::Merge);
    if (isWhole) {
      CheckIndexes(*set, found);
    }
    return com::MakeObject<SetFindings>(set, std::move(scope), std::move(found));
  });
}

STDMETHODIMP CMergeSet::Plan(VARIANT modules, IMergePlan** plan) {
  return Answer(plan, [&] {
    const std::vector<common::WideString> keys = ReadKeys(modules);
    const SharedSet set = RequireSet();
    return com::MakeObject<SetPlan>(set, RequireModules(*set, keys));
  });
}

STDMETHODIMP CMergeSet::UsersOf(BSTR moduleKey, IModuleUsers** users) {
  return Answer(users, [&] {
    const SharedSet set = RequireSet();
    return MakeUsers(set, set->Users().Find(RequireModules(*set, common::ViewOf(moduleKey))));
  });
}

STDMETHODIMP CMergeSet::ExclusionsOf(BSTR moduleKey, ISetExclusions** exclusions) {
  return Answer(exclusions, [&] {
    const SharedSet set = RequireSet();
    const std::wstring_view key = common::ViewOf(moduleKey);
    const std::vector<size_t> wanted =
        key.empty() ? std::vector<size_t>() : RequireModules(*set, key);
    const auto concerns = [&](const ModuleExclusion& row) {
      const std::vector<size_t> excluded =
          merge::FindExcludedModules(set->Index(), row.module, *row.exclusion);
      return std::any_of(wanted.begin(), wanted.end(), [&](size_t position) {
        return std::find(excluded.begin(), excluded.end(), position) != excluded.end();
      });
    };
    std::vector<ModuleExclusion> rows;
    for (size_t position = 0; position < set->Modules().size(); ++position) {
      for (const merge::Exclusion& exclusion : set->ModuleAt(position).exclusions) {
        const ModuleExclusion row{position, &exclusion};
        if (key.empty() || concerns(row)) {
          rows.push_back(row);
        }
      }
    }
    return MakeExclusions(set, std::move(rows));
  });
}

STDMETHODIMP CMergeSet::FindFiles(BSTR pattern, ISetFiles** files) {
  return Answer(files, [&] {
    const std::string wanted = text::ToUtf8(common::ViewOf(pattern));
    return MakeFiles(
        RequireSet(),
        merge::FindFiles(RequireSet()->Modules(), wanted.empty() ? "*" : std::string_view(wanted)));
  });
}

STDMETHODIMP CMergeSet::FindDeliverers(BSTR fileName, IFileDeliverers** deliverers) {
  return Answer(deliverers, [&] {
    const SharedSet set = RequireSet();
    const auto shared = std::make_shared<const std::vector<merge::Deliverer>>(merge::FindDeliverers(
        set->Index(), set->Indexes().files, text::ToUtf8(common::ViewOf(fileName))));
    return MakeCollection<IFileDeliverers, IFileDeliverer>(
        shared->size(),
        [set, shared](size_t at) { return com::MakeObject<FileDeliverer>(set, (*shared)[at]); },
        [shared](size_t at) { return (*shared)[at].moduleKey; });
  });
}

STDMETHODIMP CMergeSet::get_GalleryDescriptions(IGalleryDescriptions** descriptions) {
  return Answer(descriptions, [&] {
    const SharedSet set = RequireSet();
    return MakeCollection<IGalleryDescriptions, IGalleryDescription>(
        set->Descriptions().size(),
        [set](size_t at) {
          return com::MakeObject<GalleryDescriptionItem>(set, set->Descriptions()[at]);
        },
        [set](size_t at) { return set->Descriptions()[at].packageCode; });
  });
}

STDMETHODIMP CMergeSet::FindModules(BSTR moduleKey, ISetModules** modules) {
  return Answer(modules, [&] {
    return MakeModules(RequireSet(),
                       RequireSet()->Index().FindByKey(text::ToUtf8(common::ViewOf(moduleKey))));
  });
}

STDMETHODIMP CMergeSet::get_Failures(ISetFailures** failures) {
  return Answer(failures, [&] {
    const SharedSet set = RequireSet();
    return MakeCollection<ISetFailures, ISetFailure>(
        set->Failures().size(),
        [set](size_t at) { return com::MakeObject<SetFailure>(set, set->Failures()[at]); },
        nullptr);
  });
}

STDMETHODIMP CMergeSet::ReportProgressTo(VARIANT function) {
  return MethodBoundary([&] {
    const VARIANT* const value = common::ResolveVariantReferences(&function);
    const bool isNone = IsOmitted(function) || (value && value->vt == VT_NULL);
    if (!isNone && (!value || value->vt != VT_DISPATCH)) {
      com::Raise(com_exception(E_INVALIDARG, L"The argument is not a function."));
    }
    m_onProgress = common::ComPtr<IDispatch>(isNone ? nullptr : value->pdispVal);
    return S_OK;
  });
}

}  // namespace qm::analysis
