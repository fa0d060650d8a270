#pragma once

#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace msidb {

/// The summary information stream of an installer database, opened for reading by the file's path.
class SummaryInfo {
 public:
  /// Raised as "MsiGetSummaryInformation" with the path when the stream cannot be opened.
  explicit SummaryInfo(const CWideString& path);

  /// The text of a property (PID_SUBJECT and so on), of any length; empty when the property is
  /// missing, is no text or cannot be read.
  CWideString GetString(UINT property) const;

 private:
  CMsiHandle m_handle;
};

}  // namespace msidb
