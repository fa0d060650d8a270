#pragma once

#include "common/WideString.h"

/// The identity of a module: its ID and language as "ID:language", the language in signed decimal,
/// 0 for neutral.
CWideString MakeModuleKey(const CWideString& id, long language);
