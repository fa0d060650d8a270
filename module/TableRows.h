#pragma once

#include "common/WideString.h"
#include "msidb/ModuleDatabase.h"

namespace qm::module {

// Rows of a module's tables. Texts and numbers are those of the table; a null number is
// kNullInteger.

/// A row of the ModuleDependency table: a required module.
struct DependencyRow {
  explicit DependencyRow(const msidb::RowCursor& row);
  DependencyRow(common::WideString id, common::WideString version, long language);

  common::WideString RequiredID;
  int RequiredLanguage;
  common::WideString RequiredVersion;
  common::WideString Key;  ///< module key of RequiredID and RequiredLanguage
};

/// A row of the ModuleExclusion table: an excluded module. Either version bound may be empty.
struct ExclusionRow {
  explicit ExclusionRow(const msidb::RowCursor& row);
  ExclusionRow(common::WideString id, common::WideString minVersion, common::WideString maxVersion,
               long language);

  common::WideString ExcludedID;
  int ExcludedLanguage;
  common::WideString ExcludedMinVersion;
  common::WideString ExcludedMaxVersion;
  common::WideString Key;  ///< module key of ExcludedID and ExcludedLanguage
};

/// A row of the File table.
struct FileRow {
  FileRow(const msidb::RowCursor& row, common::WideString directory);

  common::WideString File;
  common::WideString FileName;
  int FileSize;  ///< in bytes
  common::WideString Version;
  common::WideString Language;
  int Sequence;
  common::WideString Directory;  ///< Directory_ of the file's component; empty if that is missing
};

}  // namespace qm::module
