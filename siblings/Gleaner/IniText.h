#pragma once

#include <string>
#include <string_view>

#include "common/WideString.h"

namespace qm::siblings {

/// Decodes the bytes of a text file: UTF-8 or UTF-16 of either byte order if they begin with a
/// byte-order mark, which is removed; otherwise the system's code page. Invalid bytes are replaced
/// as MultiByteToWideChar replaces them. An odd byte at the end of UTF-16 is dropped. Throws
/// std::bad_alloc.
std::wstring DecodeTextFile(std::string_view bytes);

/// Reads and decodes a text file. Raises failures as RaiseLastFileError does.
std::wstring ReadTextFile(const common::WideString& path);

}  // namespace qm::siblings
