#pragma once

#include <string>
#include <string_view>

#include "common/WideString.h"

namespace mmcat {

/// Bytes as lower-case hexadecimal digits.
std::string FormatHex(const unsigned char* bytes, size_t size);

/// The SHA-256 of bytes, as 64 lower-case hexadecimal digits. Throws ServerFailure.
std::string HashBytes(std::string_view bytes);

/// The same for a file. Throws ServerFailure if it cannot be read.
std::string HashFile(const qm::common::WideString& path);

}  // namespace mmcat
