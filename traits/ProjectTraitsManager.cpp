#include "traits/ProjectTraitsManager.h"

#include "com/error/Exception.h"
#include "com/loader/ComponentLoader.h"
#include "common/DllLifetime.h"
#include "traits/ProjectTraitsMSI.h"
#include "traits/ProjectTraitsPro.h"

namespace qm::traits {

namespace {

/// The exported name, which is decorated in 32 bits only.
#ifdef _WIN64
constexpr char kGetActiveProjectType[] = "GetActiveProjectType";
#else
constexpr char kGetActiveProjectType[] = "_GetActiveProjectType@0";
#endif

}  // namespace

int GetActiveProjectType() {
  const auto getType = com::ComponentLoader::Instance().GetFunction<int(WINAPI*)()>(
      L"QMObjMgr.DLL", kGetActiveProjectType);
  return getType();
}

bool IsScriptProjectActive() {
  return GetActiveProjectType() == static_cast<int>(ProjectType::Script);
}

CProjectTraitsManager::CProjectTraitsManager() {
  m_traits.push_back(std::make_unique<ProjectTraitsMSI>());
  m_traits.push_back(std::make_unique<ProjectTraitsPro>());
}

CProjectTraitsManager& CProjectTraitsManager::Instance() {
  static common::DllWide<CProjectTraitsManager> manager;
  return manager.Get([] { return new CProjectTraitsManager; });
}

const ProjectTraits& CProjectTraitsManager::Current() const {
  const auto type = static_cast<size_t>(GetActiveProjectType());
  // A negative type becomes a large number, and so is out of range too.
  if (type >= m_traits.size() || !m_traits[type]) {
    com::ThrowMemoryException();
  }
  return *m_traits[type];
}

}  // namespace qm::traits
