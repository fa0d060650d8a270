#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ServerFailure.h"
#include "idl/qmmmupdater.h"

namespace mmcat {

// What the client shows of a module. Texts are UTF-8. A number that is null in the module's table
// has no value.

struct FileContents {
  std::string key;
  std::string directory;   ///< key in the Directory table
  std::string targetPath;  ///< of that directory, such as "[ProgramFilesFolder]My Company\\bin"
  std::string fileName;
  std::optional<long> size;
  std::string version;
  std::string language;
  std::optional<long> sequence;
};

struct DependencyContents {
  std::string key;
  std::string moduleId;
  std::optional<long> language;
  std::string version;
};

struct ExclusionContents {
  std::string key;
  std::string moduleId;
  std::string language;
  std::string minVersion;
  std::string maxVersion;
};

struct DownloadFileContents {
  std::string location;
  std::string mediaLocation;
  std::string internetLocation;
  long size = 0;
  std::string checkSum;
};

/// What the object gallery knows about a module.
struct GalleryContents {
  bool present = true;
  bool needsDownload = false;
  std::string localPath;
  std::vector<DownloadFileContents> downloadFiles;
};

/// A part of a module that could not be read.
struct PartFailure {
  std::string part;  ///< "files", "dependencies", ..., "target path of KEY", "gallery"
  ServerFailure failure;
};

struct ModuleContents {
  std::string path;
  std::string key;
  std::string moduleId;
  std::optional<long> language;
  std::string version;
  std::string displayName;
  std::string subject;
  std::string author;
  std::string comments;
  std::string packageCode;
  std::vector<FileContents> files;
  std::vector<DependencyContents> dependencies;
  std::vector<ExclusionContents> exclusions;
  std::vector<std::string> customActions;
  std::vector<std::string> dialogs;
  GalleryContents gallery;
  /// The parts that could not be read: collections, which are then empty, and target paths.
  std::vector<PartFailure> failures;
};

/// Reads what the gallery knows about a module. What cannot be read is added to `failures`.
GalleryContents ReadGalleryContents(IMergeModule2& module, std::vector<PartFailure>& failures);

/// Reads the identity, summary and tables of an open module, and resolves the target paths of its
/// files. Throws ServerFailure if a property fails. A collection or target path that fails is left
/// out and added to `failures`.
ModuleContents ReadModuleContents(IMergeModule2& module);

}  // namespace mmcat
