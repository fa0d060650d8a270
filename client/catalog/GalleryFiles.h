#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ServerFailure.h"
#include "idl/siblings.h"

namespace mmcat {

/// A description file of the object gallery. Texts are UTF-8, and empty where the file has no
/// value.
struct GalleryFile {
  std::string path;
  std::string packageCode;  ///< the file name without its extension
  std::string moduleId;
  std::string key;  ///< "ID:language"
  std::string version;
  std::optional<ServerFailure> failure;  ///< why the file could not be read
};

/// Reads the description files below the gallery root of the application services, sorted by name.
/// Returns nothing if there is no root or no folder. Throws ServerFailure if the application
/// services fail; a file that cannot be read has its `failure` set instead.
std::vector<GalleryFile> ReadGalleryFiles();

}  // namespace mmcat
