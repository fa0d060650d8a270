#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/ServerFailure.h"
#include "idl/qmmmupdater.h"

// What the client shows of a module: plain values in UTF-8. A number that the module's table leaves
// null has no value.

struct FileDescription {
  std::string key;
  std::string directory;
  std::string fileName;
  std::optional<long> size;
  std::string version;
  std::string language;
  std::optional<long> sequence;
};

struct DependencyDescription {
  std::string key;
  std::string moduleId;
  std::optional<long> language;
  std::string version;
};

struct ExclusionDescription {
  std::string key;
  std::string moduleId;
  std::string language;
  std::string minVersion;
  std::string maxVersion;
};

struct ModuleDescription {
  std::string path;
  std::string key;
  std::string moduleId;
  long language = 0;
  std::string version;
  std::string displayName;
  std::string subject;
  std::string author;
  std::string comments;
  std::string packageCode;
  std::vector<FileDescription> files;
  std::vector<DependencyDescription> dependencies;
  std::vector<ExclusionDescription> exclusions;
  std::vector<std::string> customActions;
  std::vector<std::string> dialogs;
  /// Collections that could not be read; they are empty above.
  std::vector<ServerFailure> failures;
};

/// Everything that an open module says of itself. Throws ServerFailure when a property fails; a
/// collection that fails is left out and listed among the failures.
ModuleDescription Describe(IMergeModule& module);
