#pragma once

#include <windows.h>

#include <string_view>

#include "common/WideString.h"

namespace qm::msidb {

/// Decodes `bytes` up to the first zero byte. `codePage` must be valid; 0 is the system's own.
/// Invalid bytes are replaced as MultiByteToWideChar replaces them. Throws std::bad_alloc.
common::WideString DecodeCodePageText(std::string_view bytes, UINT codePage);

}  // namespace qm::msidb
