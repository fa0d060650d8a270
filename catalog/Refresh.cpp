#include "catalog/Refresh.h"

#include "catalog/GalleryModules.h"
#include "com/error/Raise.h"

namespace qm::catalog {

namespace {

using SourceMap = CatalogState::SourceMap;

/// Returns the sources of `folders`: those of `known` that match, and new ones.
SourceMap MakeSources(const SourceMap& known, const std::vector<SearchFolder>& folders) {
  SourceMap sources;
  for (const SearchFolder& folder : folders) {
    if (sources.count(folder.path) != 0) {
      continue;
    }
    const auto found = known.find(folder.path);
    const bool isKnown = found != known.end();
    if (isKnown && CanShareSource(found->second->Folder(), folder)) {
      found->second->SetEntry(folder.entry);
      sources.insert(*found);
    } else {
      sources.emplace(folder.path,
                      std::make_shared<Source>(folder, isKnown ? found->second.get() : nullptr));
    }
  }
  return sources;
}

/// Tells `reader` how many files will be read.
void AnnounceFiles(const SourceMap& sources, IOpenFileReader& reader) {
  size_t count = 0;
  for (const auto& [folder, source] : sources) {
    count += source->CountUnread();
  }
  com::RaiseIfFailed(reader.BeginFiles(static_cast<ULONG>(count)));
}

void AddModulesOfPass(const SourceMap& sources, Pass pass, CatalogModules& modules) {
  for (const auto& [folder, source] : sources) {
    if (source->Folder().pass == pass) {
      for (const auto& record : *source->Records()) {
        modules.Add(record);
      }
    }
  }
}

}  // namespace

void UpdateSources(CatalogState& state, const std::vector<SearchFolder>& folders) {
  SourceMap sources = MakeSources(state.sources, folders);
  if (sources != state.sources) {
    state.sources.swap(sources);
    state.MarkChanged();
  }
}

void RecheckSources(CatalogState& state) {
  for (const auto& [folder, source] : state.sources) {
    if (source->FindChanges()) {
      state.MarkChanged();
    }
  }
}

CatalogModules BuildModuleList(CatalogState& state, const common::WideString& galleryRoot,
                               IOpenFileReader* reader) {
  if (reader) {
    AnnounceFiles(state.sources, *reader);
  }
  size_t count = 0;
  for (const auto& [folder, source] : state.sources) {
    source->UpdateRecords(reader, [&](const auto& record) { state.records.push_back(record); });
    count += source->Records()->size();
  }
  CatalogModules modules(count);
  AddModulesOfPass(state.sources, Pass::First, modules);
  AddModulesOfPass(state.sources, Pass::Second, modules);
  AddGalleryModules(state, galleryRoot, modules);
  return modules;
}

}  // namespace qm::catalog
