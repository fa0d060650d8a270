#pragma once

#include "common/WideString.h"

namespace msidb {

/// Whether the file of an installer database ends before the data that its own allocation table
/// speaks of, as one does that is still being written or was not copied to its end. False for a
/// file that cannot be opened, and for one that is no compound file: the installer says what is
/// wrong with those, while some installers do not survive one that is cut short.
bool IsCutShort(const CWideString& path) noexcept;

}  // namespace msidb
