#pragma once

#include <memory>
#include <vector>

#include "traits/ProjectTraits.h"

/// Types of project, as the environment numbers them.
enum ProjectType {
  kInstallerProject = 0,
  kScriptProject = 1,
};

/// The type of the project that is active in the environment, asked anew at every call of
/// QMObjMgr.DLL. A DLL that is missing or lacks the function is
/// raised, with its name in the description.
int GetActiveProjectType();

/// Whether the active project is script-based. Raises as GetActiveProjectType does. Nothing in the
/// server asks it yet.
bool IsScriptProjectActive();

/// Owns the traits of both kinds of project. One per DLL: the server makes it when it is loaded,
/// and it ends with the DLL. Programs that link this folder have it from its first use on.
class CProjectTraitsManager {
 public:
  /// Throws std::bad_alloc while there is none yet.
  static CProjectTraitsManager& Instance();

  /// The traits of one kind of project, whichever is active.
  const ProjectTraits& Of(ProjectType type) const noexcept { return *m_traits[type]; }

  /// The traits of the active project. For one of no known type the frame's out-of-memory
  /// exception is thrown, by which callers recognise it. Raises as GetActiveProjectType does.
  const ProjectTraits& Current() const;

 private:
  CProjectTraitsManager();

  std::vector<std::unique_ptr<const ProjectTraits>> m_traits;  // by ProjectType
};
