#include "msidb/TargetPath.h"

#include "msidb/ProjectTraitsMSI.h"

msidb::DirectoryOptions TargetPathOptions() noexcept {
  const ProjectTraitsMSI traits;
  msidb::DirectoryOptions options;
  options.stripModuleSuffix = true;
  options.resolveDotFolders = true;
  options.brackets = {traits.OpenDelimiterChar(), traits.CloseDelimiterChar()};
  return options;
}
