#pragma once

#include <string>
#include <string_view>

namespace qm::image {

enum class StreamKind {
  Table,  ///< the rows of a table, the string pool and its data
  Other   ///< data of a row, such as "Binary.Icon"
};

/// Returns the name under which a database keeps a stream in its compound file. Two letters,
/// digits, dots or underscores are packed into one character; the names of tables begin with a
/// mark.
std::u16string EncodeStreamName(std::u16string_view name, StreamKind kind);

/// The same for an ASCII name.
std::u16string EncodeStreamName(std::string_view name, StreamKind kind);

/// Decodes a name for display: every character that is not ASCII is replaced by "?".
std::string DecodeStreamName(std::u16string_view encoded);

}  // namespace qm::image
