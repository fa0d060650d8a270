#pragma once

#include "common/WideString.h"

namespace msidb {

/// One name of a DefaultDir text "target:source", of which each part is "short|long" or one name
/// for both. A text without ":" or "|" serves for both sides.
CWideString SplitDefaultDir(const CWideString& defaultDir, bool useSourcePart, bool useShortName);

/// Whether `text` has the length of the suffix that a merge module's keys carry: a GUID with
/// separators (36 characters) or without (32).
bool ModuleSuffixMatch(std::wstring_view text) noexcept;

/// `key` without its module suffix, when it has one behind its last ".".
CWideString StripModuleSuffix(const CWideString& key);

}  // namespace msidb
