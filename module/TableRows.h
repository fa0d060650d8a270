#pragma once

#include "common/WideString.h"
#include "msidb/ModuleDatabase.h"

// Rows of a module's tables. Texts and numbers are those of the table; a null number is
// kNullInteger.

/// A row of the ModuleDependency table: a required module.
struct DependencyRecord {
  explicit DependencyRecord(const msidb::TableRows& row);
  DependencyRecord(CWideString id, CWideString version, long language);

  CWideString RequiredID;
  int RequiredLanguage;
  CWideString RequiredVersion;
  CWideString Key;  ///< module key of RequiredID and RequiredLanguage
};

/// A row of the ModuleExclusion table: an excluded module. Either version bound may be empty.
struct ExclusionRecord {
  explicit ExclusionRecord(const msidb::TableRows& row);
  ExclusionRecord(CWideString id, CWideString minVersion, CWideString maxVersion, long language);

  CWideString ExcludedID;
  int ExcludedLanguage;
  CWideString ExcludedMinVersion;
  CWideString ExcludedMaxVersion;
  CWideString Key;  ///< module key of ExcludedID and ExcludedLanguage
};

/// A row of the File table.
struct FileRecord {
  FileRecord(const msidb::TableRows& row, CWideString directory);

  CWideString File;
  CWideString FileName;
  int FileSize;
  CWideString Version;
  CWideString Language;
  int Sequence;
  CWideString Directory;  ///< Directory_ of the file's component; empty if that is missing
};
