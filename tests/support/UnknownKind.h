#pragma once

#include <filesystem>
#include <fstream>

namespace qm::tests {

/// Sets the format version of a database file to one that the server's reader does not know, so
/// that the file is read through the installer.
inline void MakeUnknownKind(const std::filesystem::path& file) {
  std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
  bytes.seekp(0x1A);  // the major version in the header of a compound file
  bytes.put(5);
}

}  // namespace qm::tests
