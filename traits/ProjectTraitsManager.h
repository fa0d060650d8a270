#pragma once

#include <memory>
#include <vector>

#include "traits/ProjectTraits.h"

namespace qm::traits {

/// Project types, as the environment numbers them.
enum class ProjectType { Installer = 0, Script = 1 };

/// Returns the type of the project that is active in the environment, as QMObjMgr.DLL reports it at
/// each call. If the DLL or its function is missing, raises a failure that names the DLL.
int GetActiveProjectType();

/// Returns whether the active project is script-based. Raises as GetActiveProjectType does. The
/// server does not call it.
bool IsScriptProjectActive();

/// Owns the traits of both kinds of project, from creation to the unloading of the DLL. One per
/// DLL. The server creates it when it is loaded, other programs at first use.
class CProjectTraitsManager {
 public:
  /// The first call creates the manager and may throw std::bad_alloc.
  static CProjectTraitsManager& Instance();

  /// Returns the traits of a kind of project, whichever kind is active.
  const ProjectTraits& ForType(ProjectType type) const noexcept {
    return *m_traits[static_cast<size_t>(type)];
  }

  /// Returns the traits of the active project. For a project of unknown type, throws the frame's
  /// out-of-memory exception, by which callers recognise such a project. Raises as
  /// GetActiveProjectType does.
  const ProjectTraits& Current() const;

 private:
  CProjectTraitsManager();

  std::vector<std::unique_ptr<const ProjectTraits>> m_traits;  // indexed by ProjectType
};

}  // namespace qm::traits
