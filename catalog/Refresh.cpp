#include "catalog/Refresh.h"

#include "catalog/GalleryModules.h"

namespace {

using SourceMap = CCatalogState::SourceMap;

/// Returns the sources of `folders`: those of `known` that match, and new ones.
SourceMap MakeSources(const SourceMap& known, const std::vector<SearchFolder>& folders) {
  SourceMap sources;
  for (const SearchFolder& folder : folders) {
    if (sources.count(folder.folder) != 0) {
      continue;
    }
    const auto found = known.find(folder.folder);
    const bool isKnown = found != known.end();
    if (isKnown && IsSameSource(found->second->Description(), folder)) {
      found->second->SetEntry(folder.entry);
      sources.insert(*found);
    } else {
      sources.emplace(folder.folder,
                      std::make_shared<CSource>(folder, isKnown ? found->second.get() : nullptr));
    }
  }
  return sources;
}

void AddModulesOfPass(const SourceMap& sources, Pass pass, CModuleList& modules) {
  for (const auto& [folder, source] : sources) {
    if (source->Description().pass == pass) {
      for (const auto& record : *source->Records()) {
        modules.Add(record);
      }
    }
  }
}

}  // namespace

void UpdateSources(CCatalogState& state, const std::vector<SearchFolder>& folders) {
  SourceMap sources = MakeSources(state.sources, folders);
  if (sources != state.sources) {
    state.sources.swap(sources);
    state.NoteChange();
  }
}

void RecheckSources(CCatalogState& state) {
  for (const auto& [folder, source] : state.sources) {
    if (source->Recheck()) {
      state.NoteChange();
    }
  }
}

CModuleList BuildModuleList(CCatalogState& state, const CWideString& galleryRoot) {
  size_t count = 0;
  for (const auto& [folder, source] : state.sources) {
    source->UpdateRecords([&](const auto& record) { state.records.push_back(record); });
    count += source->Records()->size();
  }
  CModuleList modules(count);
  AddModulesOfPass(state.sources, Pass::First, modules);
  AddModulesOfPass(state.sources, Pass::Second, modules);
  AddModulesOfGallery(state, galleryRoot, modules);
  return modules;
}
