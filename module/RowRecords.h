#pragma once

#include "common/WideString.h"
#include "msidb/ModuleDatabase.h"

// One row each of a module's tables. Texts and numbers are kept as the table holds them; a null
// number is kNullInteger.

/// A row of ModuleDependency: a module that is required.
struct DependencyRecord {
  explicit DependencyRecord(const msidb::TableRows& row);
  DependencyRecord(CWideString id, CWideString version, long language);

  CWideString RequiredID;
  int RequiredLanguage;
  CWideString RequiredVersion;
  CWideString Key;  ///< module key of RequiredID and RequiredLanguage
};

/// A row of ModuleExclusion: a module that is excluded. Either bound of the versions may be empty.
struct ExclusionRecord {
  explicit ExclusionRecord(const msidb::TableRows& row);
  ExclusionRecord(CWideString id, CWideString minVersion, CWideString maxVersion, long language);

  CWideString ExcludedID;
  int ExcludedLanguage;
  CWideString ExcludedMinVersion;
  CWideString ExcludedMaxVersion;
  CWideString Key;  ///< module key of ExcludedID and ExcludedLanguage
};

/// A row of File.
struct FileRecord {
  FileRecord(const msidb::TableRows& row, CWideString directory);

  CWideString File;
  CWideString FileName;
  int FileSize;
  CWideString Version;
  CWideString Language;
  int Sequence;
  CWideString
      Directory;  ///< Directory_ of the file's component; empty when the component is unknown
};
