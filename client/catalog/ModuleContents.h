#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ModuleSet.h"
#include "client/catalog/ServerFailure.h"

namespace mmcat {

// What the client shows of a module. Texts are UTF-8. A number that is null in the module's table
// has no value.

struct DownloadFileContents {
  std::string location;
  std::string mediaLocation;
  std::string internetLocation;
  long size = 0;
  std::string checkSum;
};

struct ComponentContents {
  std::string key;
  std::string componentId;
  std::string directory;
  std::string targetPath;
  std::string condition;
  std::string keyPath;
  bool is64Bit = false;
};

struct CustomActionContents {
  std::string name;
  std::optional<long> type;
  std::string source;
  std::string target;
  std::string description;  ///< the type in words
};

/// A value that the user of a module can set: a row of its ModuleConfiguration table.
struct ConfigurableItem {
  std::string name;
  std::optional<long> format;
  std::string type;
  std::string defaultValue;
  std::string displayName;
  std::string description;
};

struct TableContents {
  std::string name;
  long rows = 0;
  std::string failure;  ///< why it cannot be read; empty if it was read
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
  std::string part;  ///< "gallery" or "download files"
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
  std::string platform;                  ///< such as "Intel"; empty if the module names none
  std::optional<long> minimumInstaller;  ///< 100 times the version of the installer
  std::vector<FileFacts> files;
  std::vector<ComponentContents> components;
  std::vector<RequirementFacts> dependencies;
  std::vector<ExclusionFacts> exclusions;
  std::vector<CustomActionContents> customActions;
  std::vector<ConfigurableItem> configurableItems;
  std::vector<std::string> dialogs;
  std::vector<TableContents> tables;  ///< by name
  GalleryContents gallery;
  std::vector<PartFailure> failures;  ///< of `gallery`
};

/// Reads what the gallery knows about a module. What cannot be read is added to `failures`.
GalleryContents ReadGalleryContents(ISetModule& module, std::vector<PartFailure>& failures);

/// Reads the identity, summary and tables of a module. Throws ServerFailure.
ModuleContents ReadModuleContents(const ModuleSet& set, size_t position);

}  // namespace mmcat
