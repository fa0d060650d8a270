#pragma once

#include "common/NullInteger.h"
#include "common/WideString.h"
#include "msidb/MsiHandle.h"

namespace msidb {

/// An installer record, or none. Fields are numbered from 1. Failures are raised, see
/// ReportInstallerResult. The server reads records and makes none.
class Record {
 public:
  Record() noexcept = default;
  explicit Record(CMsiHandle handle) noexcept : m_handle(std::move(handle)) {}

  /// A new record; when the installer makes none, that is ERROR_CREATE_FAILED.
  static Record Create(UINT fieldCount);

  explicit operator bool() const noexcept { return static_cast<bool>(m_handle); }
  MSIHANDLE Get() const noexcept { return m_handle.Get(); }

  /// The text of a field, of any length; empty for a null field.
  CWideString GetString(UINT field) const;

  /// The number of a field: kNullInteger when it is null or no number, 0 without a record.
  int GetInteger(UINT field) const noexcept;

  bool IsNull(UINT field) const noexcept;

  UINT FieldCount() const noexcept;

  void SetString(UINT field, const CWideString& text);
  void SetInteger(UINT field, int value);

  /// Makes every field null.
  void Clear();

 private:
  CMsiHandle m_handle;
};

}  // namespace msidb
