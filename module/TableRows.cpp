#include "module/TableRows.h"

#include "common/ModuleKey.h"

DependencyRecord::DependencyRecord(const msidb::TableRows& row)
    : DependencyRecord(row.GetString(3), row.GetString(5), row.GetInteger(4)) {}

DependencyRecord::DependencyRecord(CWideString id, CWideString version, long language)
    : RequiredID(std::move(id)),
      RequiredLanguage(language),
      RequiredVersion(std::move(version)),
      Key(MakeModuleKey(RequiredID, RequiredLanguage)) {}

ExclusionRecord::ExclusionRecord(const msidb::TableRows& row)
    : ExclusionRecord(row.GetString(3), row.GetString(5), row.GetString(6), row.GetInteger(4)) {}

ExclusionRecord::ExclusionRecord(CWideString id, CWideString minVersion, CWideString maxVersion,
                                 long language)
    : ExcludedID(std::move(id)),
      ExcludedLanguage(language),
      ExcludedMinVersion(std::move(minVersion)),
      ExcludedMaxVersion(std::move(maxVersion)),
      Key(MakeModuleKey(ExcludedID, ExcludedLanguage)) {}

FileRecord::FileRecord(const msidb::TableRows& row, CWideString directory)
    : File(row.GetString(1)),
      FileName(row.GetString(3)),
      FileSize(row.GetInteger(4)),
      Version(row.GetString(5)),
      Language(row.GetString(6)),
      Sequence(row.GetInteger(8)),
      Directory(std::move(directory)) {}
