#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ServerFailure.h"
#include "idl/siblings.h"

/// A description file of the object gallery: plain values in UTF-8, empty where the file gives
/// none.
struct GalleryFile {
  std::string path;
  std::string packageCode;  ///< what the file is named after
  std::string moduleId;
  std::string key;  ///< "ID:language"
  std::string version;
  std::optional<ServerFailure> failure;  ///< why the file could not be read
};

/// The description files below the gallery root of the application services, in the order of their
/// names; none without a root or a folder. Throws ServerFailure when a component that is asked
/// fails.
std::vector<GalleryFile> ReadGalleryFiles();
