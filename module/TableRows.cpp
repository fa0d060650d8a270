#include "module/TableRows.h"

#include "common/ModuleKey.h"

namespace qm::module {

DependencyRow::DependencyRow(const msidb::RowCursor& row)
    : DependencyRow(row.GetString(3), row.GetString(5), row.GetInteger(4)) {}

DependencyRow::DependencyRow(common::WideString id, common::WideString version, long language)
    : RequiredID(std::move(id)),
      RequiredLanguage(language),
      RequiredVersion(std::move(version)),
      Key(common::MakeModuleKey(RequiredID, RequiredLanguage)) {}

ExclusionRow::ExclusionRow(const msidb::RowCursor& row)
    : ExclusionRow(row.GetString(3), row.GetString(5), row.GetString(6), row.GetInteger(4)) {}

ExclusionRow::ExclusionRow(common::WideString id, common::WideString minVersion,
                           common::WideString maxVersion, long language)
    : ExcludedID(std::move(id)),
      ExcludedLanguage(language),
      ExcludedMinVersion(std::move(minVersion)),
      ExcludedMaxVersion(std::move(maxVersion)),
      Key(common::MakeModuleKey(ExcludedID, ExcludedLanguage)) {}

FileRow::FileRow(const msidb::RowCursor& row, common::WideString directory)
    : File(row.GetString(1)),
      FileName(row.GetString(3)),
      FileSize(row.GetInteger(4)),
      Version(row.GetString(5)),
      Language(row.GetString(6)),
      Sequence(row.GetInteger(8)),
      Directory(std::move(directory)) {}

}  // namespace qm::module
