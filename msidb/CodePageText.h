#pragma once

#include <windows.h>

#include <string_view>

#include "common/WideString.h"

namespace msidb {

/// Decodes `bytes` up to the first zero byte. `codePage` must be valid; 0 is the system's own.
/// Invalid bytes are replaced as MultiByteToWideChar replaces them. Throws std::bad_alloc.
CWideString DecodeText(std::string_view bytes, UINT codePage);

}  // namespace msidb
