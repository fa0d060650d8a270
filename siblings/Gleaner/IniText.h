#pragma once

#include <string>
#include <string_view>

#include "common/WideString.h"

/// The text that the bytes of a file spell: UTF-8 or UTF-16 of either byte order when they begin
/// with a byte-order mark, which is left out, otherwise text in the system's code page. Bytes that
/// are no character become U+FFFD, half a character at the end is dropped. Throws std::bad_alloc.
std::wstring DecodeText(std::string_view bytes);

/// The text of a file. A file that cannot be read is raised as the HRESULT of the system's error
/// code, with a description that begins with the path.
std::wstring ReadText(const CWideString& path);
