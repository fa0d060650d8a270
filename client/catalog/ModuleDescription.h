#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ServerFailure.h"
#include "idl/qmmmupdater.h"

// What the client shows of a module: plain values in UTF-8. A number that the module's table leaves
// null has no value.

struct FileDescription {
  std::string key;
  std::string directory;   ///< key of the module's Directory table
  std::string targetPath;  ///< where that directory lies, "[ProgramFilesFolder]My Company\\bin"
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

struct DownloadFileDescription {
  std::string location;
  std::string mediaLocation;
  std::string internetLocation;
  long size = 0;
  std::string checkSum;
};

/// What the object gallery says about the module.
struct GalleryDescription {
  bool present = true;
  bool needsDownload = false;
  std::string localPath;
  std::vector<DownloadFileDescription> downloadFiles;
};

/// A part of a module that could not be read.
struct PartFailure {
  std::string part;  ///< "files", "dependencies", ..., "target path of KEY", "gallery"
  ServerFailure failure;
};

struct ModuleDescription {
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
  std::vector<FileDescription> files;
  std::vector<DependencyDescription> dependencies;
  std::vector<ExclusionDescription> exclusions;
  std::vector<std::string> customActions;
  std::vector<std::string> dialogs;
  GalleryDescription gallery;
  /// What could not be read: collections, which are empty above, or target paths.
  std::vector<PartFailure> failures;
};

/// What the gallery says about a module; what cannot be read is added to the failures.
GalleryDescription DescribeGallery(IMergeModule2& module, std::vector<PartFailure>& failures);

/// Identity, summary and tables of an open module, with the target paths of its files. Throws
/// ServerFailure when a property fails; a collection or target path that fails is left out and
/// listed among the failures.
ModuleDescription Describe(IMergeModule2& module);
