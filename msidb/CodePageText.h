#pragma once

#include <windows.h>

#include <string_view>

#include "common/WideString.h"

namespace msidb {

/// Text of bytes in a code page, 0 for the system's own, up to the first zero. Bytes that the code
/// page does not have become what the system replaces them with. Throws std::bad_alloc.
CWideString DecodeText(std::string_view bytes, UINT codePage);

}  // namespace msidb
