#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/DatabaseFile.h"

namespace qm::tests {

using Columns = std::vector<std::pair<std::string, unsigned>>;

/// The columns of tables as the installer documents them; those of any other table are Key and
/// Value.
inline const Columns& ColumnsOf(const std::string& table) {
  static const Columns sequence = {{"Action", kText | kKey},
                                   {"Sequence", kShort | kNullable},
                                   {"BaseAction", kText | kNullable},
                                   {"After", kShort | kNullable},
                                   {"Condition", kText | kNullable}};
  static const std::map<std::string, Columns> all = {
      {"ModuleSignature",
       {{"ModuleID", kText | kKey}, {"Language", kShort | kKey}, {"Version", kText}}},
      {"ModuleDependency",
       {{"ModuleID", kText | kKey},
        {"ModuleLanguage", kShort | kKey},
        {"RequiredID", kText | kKey},
        {"RequiredLanguage", kShort | kKey},
        {"RequiredVersion", kText | kNullable}}},
      {"ModuleExclusion",
       {{"ModuleID", kText | kKey},
        {"ModuleLanguage", kShort | kKey},
        {"ExcludedID", kText | kKey},
        {"ExcludedLanguage", kShort | kKey},
        {"ExcludedMinVersion", kText | kNullable},
        {"ExcludedMaxVersion", kText | kNullable}}},
      {"Directory",
       {{"Directory", kText | kKey},
        {"Directory_Parent", kText | kNullable},
        {"DefaultDir", kText}}},
      {"Component",
       {{"Component", kText | kKey},
        {"ComponentId", kText | kNullable},
        {"Directory_", kText},
        {"Attributes", kShort},
        {"Condition", kText | kNullable},
        {"KeyPath", kText | kNullable}}},
      {"File",
       {{"File", kText | kKey},
        {"Component_", kText},
        {"FileName", kText},
        {"FileSize", kLong},
        {"Version", kText | kNullable},
        {"Language", kText | kNullable},
        {"Sequence", kShort}}},
      {"CustomAction",
       {{"Action", kText | kKey},
        {"Type", kShort},
        {"Source", kText | kNullable},
        {"Target", kText | kNullable}}},
      {"Binary", {{"Name", kText | kKey}, {"Data", kData | kNullable}}},
      {"ModuleInstallExecuteSequence", sequence},
      {"ModuleInstallUISequence", sequence},
      {"ModuleIgnoreTable", {{"Table", kText | kKey}}},
      {"ModuleSubstitution",
       {{"Table", kText | kKey},
        {"Row", kText | kKey},
        {"Column", kText | kKey},
        {"Value", kText | kNullable}}},
  };
  static const Columns other = {{"Key", kText | kKey}, {"Value", kText | kNullable}};
  const auto found = all.find(table);
  return found == all.end() ? other : found->second;
}

}  // namespace qm::tests
