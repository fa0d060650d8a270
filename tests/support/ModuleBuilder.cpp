#include "tests/support/ModuleBuilder.h"

#include <filesystem>
#include <fstream>
#include <map>

#include <gtest/gtest.h>

#include "com/error/ErrorHandler.h"
#include "msidb/Database.h"
#include "tests/support/Answers.h"

namespace qm::tests {

namespace {

/// Names, types and keys of the columns of the usual tables.
const std::map<std::wstring, std::string> kHeaders{
    {L"ModuleSignature",
     "ModuleID\tLanguage\tVersion\ns72\ti2\ts32\nModuleSignature\tModuleID\tLanguage\n"},
    {L"_SummaryInformation", "PropertyId\tValue\ni2\tl255\n_SummaryInformation\tPropertyId\n"},
    {L"_ForceCodepage", "\n\n"},
    {L"Dialog", "Dialog\tWidth\ns72\ti2\nDialog\tDialog\n"},
    {L"CustomAction", "Action\tType\ns72\ti2\nCustomAction\tAction\n"},
    {L"ModuleDependency",
     "ModuleID\tModuleLanguage\tRequiredID\tRequiredLanguage\tRequiredVersion\n"
     "s72\ti2\ts72\tI2\tS32\nModuleDependency\tModuleID\tModuleLanguage\tRequiredID\n"},
    {L"ModuleExclusion",
     "ModuleID\tModuleLanguage\tExcludedID\tExcludedLanguage\tExcludedMinVersion\tExcludedMaxVersio"
     "n\n"
     "s72\ti2\ts72\ti2\tS20\tS20\n"
     "ModuleExclusion\tModuleID\tModuleLanguage\tExcludedID\tExcludedLanguage\n"},
    {L"Component", "Component\tComponentId\tDirectory_\ns72\tS38\ts72\nComponent\tComponent\n"},
    {L"File",
     "File\tComponent_\tFileName\tFileSize\tVersion\tLanguage\tAttributes\tSequence\n"
     "s72\ts72\tl0\tI4\tS72\tS20\tI2\tI2\nFile\tFile\tComponent_\n"}};

}  // namespace

void BuildModule(const std::wstring& path, const std::vector<TableText>& tables) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const HRESULT hr = com::RunAtBoundary(GUID_NULL, [&] {
    msidb::Database database = msidb::Database::Open(path.c_str(), MSIDBOPEN_CREATE);
    for (const TableText& table : tables) {
      const std::wstring file = table.name + std::wstring(L".idt");
      const std::string header = table.header.empty() ? kHeaders.at(table.name) : table.header;
      // As text: the installer wants CRLF.
      std::ofstream(folder / file) << header << table.rows;
      database.Import(folder.c_str(), file.c_str());
    }
    database.Commit();
    return S_OK;
  });
  EXPECT_EQ(S_OK, hr) << testing::PrintToString(TakeDescription());
}

void BuildRichModule(const std::wstring& path) {
  BuildModule(
      path,
      {{L"ModuleSignature", "Rich.0A1B\t1033\t3.1.4\n"},
       {L"_SummaryInformation",
        "1\t1252\n3\tA rich module\n4\tThe author\n6\tThe comments\n"
        "9\t{00000000-0000-0000-0000-00000000ABCD}\n"},
       {L"Dialog", "ZuluDialog\t1\nAlphaDialog\t2\n"},
       {L"CustomAction", "ZuluAction\t1\nAlphaAction\t2\n"},
       {L"ModuleDependency", "Rich.0A1B\t1033\tNeed.B\t1031\t2.0\nRich.0A1B\t1033\tNeed.A\t0\t\n"},
       {L"ModuleExclusion",
        "Rich.0A1B\t1033\tAvoid.B\t1036\t1.5\t1.9\nRich.0A1B\t1033\tAvoid.A\t-1033\t\t7.0\n"},
       {L"Component", "CompA\t\tDirA.0A1B\nCompB\t\tDirB.0A1B\n"},
       {L"File",
        "ZuluFile\tCompA\tZULU.DLL|zulufile.dll\t4711\t6.0.1\t1040,1041\t\t1\n"
        "AlphaFile\tCompB\tALPHA.TXT|alphafile.txt\t815\tZuluFile\t1042\t\t2\n"}});
}

}  // namespace qm::tests
