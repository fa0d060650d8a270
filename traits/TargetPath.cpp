#include "traits/TargetPath.h"

#include "traits/ProjectTraitsManager.h"

namespace qm::traits {

msidb::DirectoryOptions MakeTargetPathOptions() {
  const ProjectTraits& traits = CProjectTraitsManager::Instance().ForType(ProjectType::Installer);
  msidb::DirectoryOptions options;
  options.stripModuleSuffix = true;
  options.resolveDotFolders = true;
  options.brackets = {traits.OpenDelimiterChar(), traits.CloseDelimiterChar()};
  return options;
}

}  // namespace qm::traits
