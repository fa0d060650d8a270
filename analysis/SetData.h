#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/IndexFiles.h"
#include "analysis/LoadFailure.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"
#include "merge/ModuleIndex.h"
#include "merge/ModuleUsers.h"
#include "merge/TargetFolders.h"

namespace qm::analysis {

/// A description file of the object gallery. Texts are UTF-8, and empty where the file has no
/// value.
struct GalleryDescription {
  std::string path;
  std::string packageCode;  ///< the file name without its extension
  std::string moduleId;
  std::string key;
  std::string version;
  std::string failure;  ///< why the file could not be read; empty if it could
  HRESULT failureCode = S_OK;
};

/// What MergeSet.Load read. The objects of a set share it and keep it alive. Immutable except for
/// members that are computed at the first use. Used by one apartment, like the objects of the
/// collection.
class SetData {
 public:
  /// The contents of a set. A position means the same module in `modules` and `objects`.
  struct Contents {
    std::vector<merge::Module> modules;
    std::vector<common::ComPtr<IMergeModule>> objects;  ///< of the collection
    /// The texts that gallery modules read from descriptions refer to, because they have no tables.
    std::vector<std::unique_ptr<const std::string>> texts;
    IndexContents indexes;
    std::vector<GalleryDescription> descriptions;
    std::vector<LoadFailure> failures;  ///< of modules, in their order, then of indexes
  };

  explicit SetData(Contents contents)
      : m_contents(std::move(contents)),
        m_index(m_contents.modules),
        m_folders(m_contents.modules.size()) {}
  SetData(const SetData&) = delete;
  SetData& operator=(const SetData&) = delete;
  ~SetData() = default;

  const std::vector<merge::Module>& Modules() const noexcept { return m_contents.modules; }
  const merge::Module& ModuleAt(size_t position) const noexcept {
    return m_contents.modules[position];
  }
  IMergeModule* ObjectAt(size_t position) const noexcept {
    return m_contents.objects[position].Get();
  }
  const merge::ModuleIndex& Index() const noexcept { return m_index; }
  const IndexContents& Indexes() const noexcept { return m_contents.indexes; }
  const std::vector<GalleryDescription>& Descriptions() const noexcept {
    return m_contents.descriptions;
  }

  const std::vector<LoadFailure>& Failures() const noexcept { return m_contents.failures; }

  /// Returns which modules need which. Computed at the first call.
  const merge::ModuleUsers& Users() const;

  /// Returns where an installer makes a directory of a module.
  merge::TargetFolder ResolveFolder(size_t module, std::string_view directory) const;

  /// Returns a folder as the active project spells it; in a project of unknown type, the root is
  /// "[Key]". Raises as traits::GetActiveProjectType does.
  static std::string SpellFolder(const merge::TargetFolder& folder);

  /// Returns the spelling of the folder of a directory of a module.
  std::string SpellTargetPath(size_t module, std::string_view directory) const {
    return SpellFolder(ResolveFolder(module, directory));
  }

 private:
  Contents m_contents;
  merge::ModuleIndex m_index;
  mutable std::vector<std::unique_ptr<const merge::TargetFolders>> m_folders;
  mutable std::unique_ptr<const merge::ModuleUsers> m_users;
};

using SharedSet = std::shared_ptr<const SetData>;

}  // namespace qm::analysis
