#include "traits/TargetPath.h"

#include "traits/ProjectTraitsMSI.h"

msidb::DirectoryOptions TargetPathOptions() noexcept {
  const ProjectTraitsMSI traits;
  msidb::DirectoryOptions options;
  options.stripModuleSuffix = true;
  options.resolveDotFolders = true;
  options.brackets = {traits.OpenDelimiterChar(), traits.CloseDelimiterChar()};
  return options;
}
