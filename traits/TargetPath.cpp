#include "traits/TargetPath.h"

#include "traits/ProjectTraitsManager.h"

msidb::DirectoryOptions TargetPathOptions() {
  const ProjectTraits& traits = CProjectTraitsManager::Instance().Of(ProjectType::Installer);
  msidb::DirectoryOptions options;
  options.stripModuleSuffix = true;
  options.resolveDotFolders = true;
  options.brackets = {traits.OpenDelimiterChar(), traits.CloseDelimiterChar()};
  return options;
}
