#pragma once

#include "common/NullInteger.h"
#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace qm::msidb {

/// Owns an installer record; may be empty. Fields are counted from 1. Failures are raised, see
/// ReportInstallerResult. The server only reads records.
class Record {
 public:
  Record() noexcept = default;
  explicit Record(MsiHandle handle) noexcept : m_handle(std::move(handle)) {}

  /// Creates a record. Raises ERROR_CREATE_FAILED if the installer does not return one.
  static Record Create(UINT fieldCount);

  explicit operator bool() const noexcept { return static_cast<bool>(m_handle); }
  MSIHANDLE Get() const noexcept { return m_handle.Get(); }

  /// The text of a field, of any length; empty for a null field.
  common::WideString GetString(UINT field) const;

  /// The number in a field; kNullInteger if it is null or not a number. 0 without a record.
  int GetInteger(UINT field) const noexcept;

  bool IsNull(UINT field) const noexcept;

  UINT FieldCount() const noexcept;

  void SetString(UINT field, const common::WideString& text);
  void SetInteger(UINT field, int value);

  /// Makes every field null.
  void Clear();

 private:
  MsiHandle m_handle;
};

}  // namespace qm::msidb
