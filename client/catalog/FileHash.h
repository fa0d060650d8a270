#pragma once

#include <string>

#include "common/WideString.h"

namespace mmcat {

/// Bytes as lower-case hexadecimal digits.
std::string FormatHex(const unsigned char* bytes, size_t size);

/// The SHA-256 of a file's bytes, as 64 lower-case hexadecimal digits. Throws ServerFailure if the
/// file cannot be read.
std::string HashFile(const qm::common::WideString& path);

}  // namespace mmcat
