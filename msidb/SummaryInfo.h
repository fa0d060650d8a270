#pragma once

#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace msidb {

/// The text of a property (PID_SUBJECT and so on) of the summary information `handle`, of any
/// length. The property's type alone decides: one that is no text is empty, and a code of the
/// installer is no failure.
CWideString ReadSummaryString(MSIHANDLE handle, UINT property);

/// The summary information stream of an installer database, opened for reading by the file's path.
class SummaryInfo {
 public:
  /// Raised as "MsiGetSummaryInformation" with the path when the stream cannot be opened.
  explicit SummaryInfo(const CWideString& path);

  MSIHANDLE Get() const noexcept { return m_handle.Get(); }

 private:
  CMsiHandle m_handle;
};

}  // namespace msidb
