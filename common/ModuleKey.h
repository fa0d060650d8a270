#pragma once

#include "common/WideString.h"

/// The identity of a module: its ID and language as "ID:language", the language in signed decimal,
/// 0 for neutral.
inline CWideString MakeModuleKey(const CWideString& id, long language) {
  return CWideString::Format(L"%s:%d", id.c_str(), static_cast<int>(language));
}
