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
/// QMObjMgr.DLL. A DLL that is missing or lacks the function is raised, with its name in the
/// description.
int GetActiveProjectType();

/// Whether the active project is script-based. Raises as GetActiveProjectType does.
bool IsScriptProjectActive();

/// Owns the traits of both kinds of project. One per process, made at its first use.
class CProjectTraitsManager {
 public:
  static CProjectTraitsManager& Instance();

  /// The traits of the active project. A project of no known type raises the frame's out-of-memory
  /// exception, by which callers recognise it; otherwise as GetActiveProjectType.
  const ProjectTraits& Current() const;

 private:
  CProjectTraitsManager();

  std::vector<std::unique_ptr<const ProjectTraits>> m_traits;  // by ProjectType
};
