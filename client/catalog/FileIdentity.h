#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "common/WideString.h"

namespace mmcat {

/// Identifies a file whatever path leads to it, be it through links, through ".." or in another
/// letter case.
struct FileIdentity {
  std::uint32_t volume = 0;
  std::uint64_t number = 0;   ///< of the file, or of the folder of a file that does not exist
  std::uint64_t size = 0;     ///< in bytes; volumes under Wine can share a serial number
  std::uint64_t written = 0;  ///< last-write time, as a FILETIME
  std::string missing;        ///< the folded name of a file that does not exist
};

inline bool operator==(const FileIdentity& a, const FileIdentity& b) {
  return a.volume == b.volume && a.number == b.number && a.size == b.size &&
         a.written == b.written && a.missing == b.missing;
}

/// What the system knows about the file or folder at a full path; no value if it does not exist or
/// cannot be opened.
std::optional<BY_HANDLE_FILE_INFORMATION> QueryFile(const qm::common::WideString& path);

/// Identifies the file at a path that the user gave (UTF-8), which need not exist. No value if its
/// folder does not exist or cannot be opened.
std::optional<FileIdentity> IdentifyFile(const std::string& path);

}  // namespace mmcat
