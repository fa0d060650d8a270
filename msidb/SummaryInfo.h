#pragma once

#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace qm::msidb {

/// Reads the text of a property (PID_SUBJECT and so on), of any length, of the summary information
/// `handle`. Returns an empty text if the property's type is not a text. The code that the
/// installer returns is ignored.
common::WideString ReadSummaryString(MSIHANDLE handle, UINT property);

/// Owns the summary information of an installer database file, open for reading.
class SummaryInfo {
 public:
  /// Raises a failure of MsiGetSummaryInformation with the path if the stream cannot be opened.
  explicit SummaryInfo(const common::WideString& path);

  MSIHANDLE Get() const noexcept { return m_handle.Get(); }

 private:
  MsiHandle m_handle;
};

}  // namespace qm::msidb
