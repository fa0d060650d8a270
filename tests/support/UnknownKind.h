#pragma once

#include <filesystem>
#include <fstream>

namespace qm::tests {

/// Gives the file of a database a version of the format that no reader knows, so that the installer
/// is asked for what it holds.
inline void MakeUnknownKind(const std::filesystem::path& file) {
  std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
  bytes.seekp(0x1A);  // the major version in the header of a compound file
  bytes.put(5);
}

}  // namespace qm::tests
