#pragma once

#include "common/WideString.h"

namespace qm::msidb {

/// One of the names of a DefaultDir value; by default the long name of the target folder.
struct DefaultDirPart {
  bool useSourcePart = false;
  bool useShortName = false;
};

/// Extracts one name from a DefaultDir value, "target:source", where each part is "short|long". A
/// value without ":" is both target and source; a part without "|" is both short and long name.
common::WideString SplitDefaultDir(const common::WideString& defaultDir,
                                   const DefaultDirPart& part);

/// Returns whether `text` is as long as the GUID suffix of a merge module's keys: 36 characters
/// with separators, 32 without.
bool ModuleSuffixMatch(std::wstring_view text) noexcept;

/// Removes the last "." of `key` and what follows if that is a module suffix, see
/// ModuleSuffixMatch.
common::WideString StripModuleSuffix(const common::WideString& key);

}  // namespace qm::msidb
