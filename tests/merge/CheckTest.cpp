#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "merge/Conditions.h"
#include "merge/FindingList.h"
#include "merge/Findings.h"
#include "merge/PlanObjections.h"
#include "merge/ReadModule.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/InstallerTables.h"
#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Rows = std::vector<std::vector<Cell>>;
using Lines = std::vector<std::string>;

/// Some rows of a table. Without columns, the table has those of the installer.
struct SomeRows {
  std::string table;
  Rows rows;
  Columns columns = {};
};

/// Makes a module that is read from a file with some rows, and with TARGETDIR.
merge::Module Make(const std::string& id, const std::vector<SomeRows>& tables,
                   const std::string& version = "1.0", long language = 1033,
                   const std::string& templateText = "Intel;1033,1031") {
  std::vector<SomeRows> all{
      {"ModuleSignature", {{id, static_cast<std::int32_t>(language), version}}},
      {"Directory", {{"TARGETDIR", nullptr, "SourceDir"}}}};
  for (const SomeRows& some : tables) {
    const auto same = std::find_if(all.begin(), all.end(),
                                   [&](const SomeRows& one) { return one.table == some.table; });
    if (same == all.end()) {
      all.push_back(some);
    } else {
      same->rows.insert(same->rows.end(), some.rows.begin(), some.rows.end());
    }
  }
  DatabaseImage image;
  for (SomeRows& some : all) {
    image.tables.push_back({some.table, some.columns.empty() ? ColumnsOf(some.table) : some.columns,
                            std::move(some.rows)});
  }
  std::vector<Stream> streams = WriteDatabase(image);
  streams.push_back(WriteSummary(1252, {{7, templateText}}));
  MemorySource source = WriteCompoundFile(std::move(streams)).Source();
  merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage);
  EXPECT_EQ("", module.failure);
  module.path = id + ".msm";
  return module;
}

/// A component of a folder, and a file that is its key path.
struct OneFile {
  std::string name = "a.dll";
  std::string directory = "SystemFolder";
  std::string suffix = {};  ///< of the keys
  std::string componentId = {};
  Cell condition = nullptr;
  std::string version = "1.0";
};

std::vector<SomeRows> MakeFile(const OneFile& file, const Rows& directories = {}) {
  return {
      {"Component",
       {{"C" + file.suffix, file.componentId.empty() ? Cell() : Cell(file.componentId),
         file.directory, 0, file.condition, "F" + file.suffix}}},
      {"File", {{"F" + file.suffix, "C" + file.suffix, file.name, 1, file.version, nullptr, 1}}},
      {"Directory", directories}};
}

std::vector<merge::Finding> Check(const std::vector<merge::Module>& modules,
                                  merge::CheckedAs checkedAs = merge::CheckedAs::Catalog) {
  std::vector<size_t> scope;
  for (size_t i = 0; i < modules.size(); ++i) {
    scope.push_back(i);
  }
  merge::CheckOptions options;
  options.checkedAs = checkedAs;
  const merge::ModuleIndex set(modules);
  return merge::CheckModules(set, scope, options);
}

/// "error row-conflict File F A:1033 B:1033" for each finding.
Lines Summarize(const std::vector<merge::Finding>& findings) {
  Lines lines;
  for (const merge::Finding& finding : findings) {
    std::string line = merge::GetSeverityName(finding.severity) + (' ' + finding.code);
    for (const std::string* part : {&finding.table, &finding.key}) {
      line += part->empty() ? "" : ' ' + *part;
    }
    for (const std::string& module : finding.modules) {
      line += ' ' + module;
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

/// Sets of modules and the findings that a check of the catalog has.
struct Case {
  const char* what;
  std::vector<merge::Module> modules;
  Lines findings;
};

void CheckAll(const std::vector<Case>& cases) {
  for (const Case& one : cases) {
    EXPECT_EQ(one.findings, Summarize(Check(one.modules))) << one.what;
  }
}

/// A and B with some rows each.
std::vector<merge::Module> Pair(const std::vector<SomeRows>& rowsOfA,
                                const std::vector<SomeRows>& rowsOfB) {
  return {Make("A", rowsOfA), Make("B", rowsOfB)};
}

TEST(CheckTest, RowsOfOneKeyMustBeEqual) {
  const std::string action = "ModuleInstallExecuteSequence";
  const SomeRows custom{"CustomAction", {{"Mine", 51, "P", "x"}}};
  const Columns data = {{"Key", kText | kKey}, {"Data", kData | kNullable}};
  CheckAll({
      {"another version",
       Pair(MakeFile({}), MakeFile({"a.dll", "SystemFolder", "", "", {}, "2.0"})),
       {"error row-conflict File F A:1033 B:1033"}},
      {"another sequence",
       Pair({{"File", {{"F", "C", "a.dll", 1, "1.0", nullptr, 1}}}, MakeFile({})[0]},
            {{"File", {{"F", "C", "a.dll", 1, "1.0", nullptr, 7}}}, MakeFile({})[0]}),
       {}},
      {"another condition",
       Pair(MakeFile({}), MakeFile({"a.dll", "SystemFolder", "", "", "Privileged"})),
       {"error row-conflict Component C A:1033 B:1033"}},
      {"another spelling of a folder",
       Pair({{"Directory", {{"SystemFolder", "TARGETDIR", "."}}}},
            {{"Directory", {{"SystemFolder", "TARGETDIR", "SYSTEM|System32"}}}}),
       {"warning row-conflict Directory SystemFolder A:1033 B:1033"}},
      {"another folder",
       Pair({{"Directory", {{"Bin", "TARGETDIR", "bin"}}}},
            {{"Directory", {{"Bin", "TARGETDIR", "lib"}}}}),
       {"error row-conflict Directory Bin A:1033 B:1033"}},
      {"equal rows, null and empty",
       Pair({{"Property", {{"P", "1"}, {"Q", nullptr}}}},
            {{"Property", {{"P", "1"}, {"Q", nullptr}}}}),
       {}},
      {"a value and null",
       Pair({{"Any", {{"P", "1"}}}}, {{"Any", {{"P", nullptr}}}}),
       {"error row-conflict Any P A:1033 B:1033"}},
      {"only one of them merges the table",
       Pair({{"Any", {{"P", "1"}}}}, {{"Any", {{"P", "2"}}}, {"ModuleIgnoreTable", {{"Any"}}}}),
       {}},
      {"tables that are not merged",
       Pair({{"_Validation", {{"P", "1"}}}, {"ModuleConfiguration", {{"P", "1"}}}},
            {{"_Validation", {{"P", "2"}}}, {"ModuleConfiguration", {{"P", "2"}}}}),
       {}},
      {"texts that are shown",
       Pair({{"ActionText", {{"P", "1"}}}}, {{"ActionText", {{"P", "2"}}}}),
       {"warning row-conflict ActionText P A:1033 B:1033"}},
      {"numbers of standard actions",
       Pair({{action, {{"InstallFiles", 4000, nullptr, nullptr, "A"}}}},
            {{action, {{"InstallFiles", 4001, nullptr, nullptr, "B"}}}}),
       {}},
      {"numbers of a custom action",
       Pair({custom, {action, {{"Mine", 4000, nullptr, nullptr, nullptr}}}},
            {custom, {action, {{"Mine", 4001, nullptr, nullptr, nullptr}}}}),
       {"error row-conflict ModuleInstallExecuteSequence Mine A:1033 B:1033"}},
      {"conditions of a custom action that another module has",
       Pair({custom, {action, {{"Mine", 4000, nullptr, nullptr, "X"}}}},
            {{action, {{"Mine", 4000, nullptr, nullptr, "Y"}}}}),
       {"error row-conflict ModuleInstallExecuteSequence Mine A:1033 B:1033"}},
      {"numbers of a dialog",
       Pair({{"Dialog", {{"Mine", 1}}, {{"Dialog", kText | kKey}, {"Attributes", kShort}}},
             {action, {{"Mine", 4000, nullptr, nullptr, nullptr}}}},
            {{action, {{"Mine", 4001, nullptr, nullptr, nullptr}}}}),
       {"error row-conflict ModuleInstallExecuteSequence Mine A:1033 B:1033"}},
      {"one number of a custom action",
       Pair({custom, {action, {{"Mine", 4000, nullptr, nullptr, nullptr}}}},
            {custom, {action, {{"Mine", 4000, nullptr, nullptr, nullptr}}}}),
       {}},
      {"the place of another action",
       Pair({{action, {{"Mine", nullptr, "InstallFiles", 1, nullptr}}}},
            {{action, {{"Mine", nullptr, "InstallFiles", 0, nullptr}}}}),
       {"error row-conflict ModuleInstallExecuteSequence Mine A:1033 B:1033"}},
      {"a value that the user gives",
       Pair({{"Property", {{"P", "1"}}},
             {"ModuleSubstitution", {{"Property", "P", "Value", "[=I]"}}},
             {"ModuleConfiguration", {{"I"}}, {{"Name", kText | kKey}}}},
            {{"Property", {{"P", "2"}}}}),
       {"warning row-conflict Property P A:1033 B:1033"}},
      {"a value that the user gives in place of one of two",
       {Make("A", {{"Property", {{"P", "1"}}}}), Make("B", {{"Property", {{"P", "2"}}}}),
        Make("C", {{"Property", {{"P", "1"}}},
                   {"ModuleSubstitution", {{"Property", "P", "Value", "[=I]"}}},
                   {"ModuleConfiguration", {{"I"}}, {{"Name", kText | kKey}}}})},
       {"error row-conflict Property P A:1033 B:1033 C:1033"}},
      {"the size of data",
       {Make("A", {{"Binary", {{"B", 1}}, data}}), Make("B", {{"Binary", {{"B", nullptr}}, data}})},
       {"error row-conflict Binary B A:1033 B:1033"}},
      {"one module carried in two versions",
       Pair({{"ModuleSignature", {{"Part", 0, "1.0"}}}},
            {{"ModuleSignature", {{"Part", 0, "2.0"}}}}),
       {"error row-conflict ModuleSignature Part/0 A:1033 B:1033"}},
      {"alternatives",
       {Make("A", {{"Any", {{"P", "1"}}}}), Make("A", {{"Any", {{"P", "2"}}}}, "1.0", 1031)},
       {}},
      {"alternatives of which one agrees",
       {Make("A", {{"Any", {{"P", "1"}}}}), Make("A", {{"Any", {{"P", "2"}}}}, "1.0", 1031),
        Make("B", {{"Any", {{"P", "2"}}}})},
       {}},
      {"alternatives of which none agrees",
       {Make("A", {{"Any", {{"P", "1"}}}}), Make("A", {{"Any", {{"P", "2"}}}}, "1.0", 1031),
        Make("B", {{"Any", {{"P", "3"}}}})},
       {"error row-conflict Any P A:1033 B:1033"}},
  });
}

TEST(CheckTest, BothSidesOfACollisionAreThere) {
  const std::vector<merge::Finding> findings =
      Check({Make("A", MakeFile({"a.dll", "SystemFolder", "", "", {}, "1.0"})),
             Make("B", MakeFile({"b.dll", "SystemFolder", "", "", {}, "2.0"}))});
  ASSERT_EQ(1u, findings.size());
  const merge::Finding& finding = findings.front();
  EXPECT_EQ(
      "row F of table File differs: FileName is \"a.dll\" in A:1033 and \"b.dll\" in B:1033, "
      "Version is \"1.0\" in A:1033 and \"2.0\" in B:1033",
      finding.text);
  EXPECT_EQ(4, finding.mergeError);
  EXPECT_THAT(finding.positions, ElementsAre(0u, 1u));
  ASSERT_EQ(4u, finding.values.size());
  EXPECT_EQ(1u, finding.values[3].module);
  EXPECT_EQ("Version 2.0", finding.values[3].column + ' ' + finding.values[3].value);
}

TEST(CheckTest, EveryModuleWithACollidingRowIsNamed) {
  const auto with = [](const char* id, const char* value, long language = 1033) {
    return Make(id, {{"Any", {{"P", value}}}}, "1.0", language);
  };
  const std::vector<merge::Finding> three = Check({with("A", "1"), with("B", "2"), with("C", "1")});
  EXPECT_THAT(Summarize(three), ElementsAre("error row-conflict Any P A:1033 B:1033 C:1033"));
  EXPECT_EQ("row P of table Any differs: Value is \"1\" in A:1033 and C:1033 and \"2\" in B:1033",
            three.front().text);
  ASSERT_EQ(3u, three.front().values.size());
  EXPECT_EQ("1", three.front().values[2].value);

  std::vector<merge::Module> many;
  for (char id = 'A'; id <= 'T'; ++id) {
    many.push_back(with(std::string(1, id).c_str(), id == 'T' ? "2" : "1"));
  }
  const std::vector<merge::Finding> twenty = Check(many);
  ASSERT_EQ(1u, twenty.size());
  EXPECT_EQ(merge::FindingList::kMaxModules, twenty.front().values.size());
  EXPECT_EQ("T:1033", twenty.front().modules[1]);
  EXPECT_THAT(twenty.front().text, HasSubstr("\"2\" in T:1033; 4 more modules have the row"));

  // Of alternatives, the one that agrees with the most others is named.
  EXPECT_THAT(
      Summarize(Check({with("A", "1"), with("A", "2", 1031), with("B", "2"), with("C", "3")})),
      ElementsAre("error row-conflict Any P A:1031 C:1033 B:1033"));
  // Of choices that agree equally well, all IDs take the same one.
  const auto rowConflicts = [](const std::vector<merge::Module>& modules) {
    Lines lines = Summarize(Check(modules));
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line) {
                                 return line.find("row-conflict") == std::string::npos;
                               }),
                lines.end());
    return lines;
  };
  EXPECT_THAT(
      rowConflicts({with("A", "1"), with("A", "2", 1031), with("B", "2"), with("B", "1", 1031)}),
      ElementsAre());
  EXPECT_THAT(rowConflicts({with("A", "1"), with("A", "2"), with("B", "2"), with("B", "1")}),
              ElementsAre());

  // A merge has all of them, and still names the module of another ID.
  std::vector<merge::Module> alternatives;
  for (long language = 1; language <= 9; ++language) {
    alternatives.push_back(with("A", std::to_string(language).c_str(), language));
  }
  alternatives.push_back(with("B", "10"));
  const std::vector<merge::Finding> merged = Check(alternatives, merge::CheckedAs::Merge);
  ASSERT_STREQ(merge::kRowConflict, merged.front().code.c_str());
  EXPECT_EQ("B:1033", merged.front().modules[1]);
}

TEST(CheckTest, TablesMustHaveTheSameColumns) {
  const Columns wide = {
      {"Key", kText | kKey}, {"Value", kText | kNullable}, {"X", kLong | kNullable}};
  const Columns wider = {
      {"Key", kText | kKey}, {"Value", kText | kNullable}, {"X", kShort | kNullable}};
  const Columns other = {{"Key", kText | kKey}, {"Number", kShort}};
  const merge::Module plain = Make("A", {{"Any", {{"P", "1"}}}});
  CheckAll({
      {"other columns",
       {plain, Make("B", {{"Any", {{"P", 1}}, other}})},
       {"error table-conflict Any A:1033 B:1033"}},
      {"more columns with values",
       {plain, Make("B", {{"Any", {{"P", "1", 7}}, wide}})},
       {"error row-conflict Any P A:1033 B:1033", "warning table-conflict Any A:1033 B:1033"}},
      {"more columns without", {plain, Make("B", {{"Any", {{"P", "1", nullptr}}, wide}})}, {}},
      {"other widths",
       {Make("A", {{"Any", {{"P", "1", 7}}, wide}}), Make("B", {{"Any", {{"P", "1", 7}}, wider}})},
       {}},
  });
}

TEST(CheckTest, OneComponentIdMeansOneComponent) {
  const auto with = [](const OneFile& file) {
    return MakeFile(file, {{"Bin", "TARGETDIR", "bin"}});
  };
  CheckAll({
      {"shared",
       Pair(with({"a.dll", "SystemFolder", "", "{1}"}), with({"a.dll", "SystemFolder", "", "{1}"})),
       {}},
      {"other keys",
       Pair(with({"a.dll", "SystemFolder.A", ".A", "{a}"}),
            with({"A.DLL", "SystemFolder.B", ".B", "{A}"})),
       {"warning component-conflict Component A:1033 B:1033"}},
      {"another folder",
       Pair(with({"a.dll", "SystemFolder", ".A", "{1}"}), with({"a.dll", "Bin", ".B", "{1}"})),
       {"error component-conflict Component A:1033 B:1033"}},
      {"another key path",
       Pair(with({"a.dll", "Bin", ".A", "{1}"}), with({"b.dll", "Bin", ".B", "{1}"})),
       {"error component-conflict Component A:1033 B:1033"}},
      {"one key, another key path",
       Pair(with({"a.dll", "Bin", "", "{1}"}), with({"b.dll", "Bin", "", "{1}"})),
       {"error row-conflict File F A:1033 B:1033"}},
      {"never both",
       Pair(with({"a.dll", "Bin", ".A", "{1}", "VersionNT64"}),
            with({"b.dll", "Bin", ".B", "{1}", "NOT VersionNT64"})),
       {}},
      {"perhaps both",
       Pair(with({"a.dll", "Bin", ".A", "{1}", "X=1"}), with({"b.dll", "Bin", ".B", "{1}", "Y=1"})),
       {"warning component-conflict Component A:1033 B:1033"}},
      {"another version of the key path",
       Pair(with({"a.dll", "Bin", ".A", "{1}", {}, "1.0"}),
            with({"a.dll", "Bin", ".B", "{1}", {}, "2.0"})),
       {"error component-conflict Component A:1033 B:1033"}},
      {"alternatives of which one agrees",
       {Make("A", with({"a.dll", "SystemFolder", ".1", "{1}"})),
        Make("A", with({"a.dll", "SystemFolder", ".2", "{1}"}), "1.0", 1031),
        Make("B", with({"a.dll", "SystemFolder", ".2", "{1}"}))},
       {}},
      {"an alternative that collides with itself",
       {Make("A", {{"Component",
                    {{"C", "{1}", "TARGETDIR", 0, nullptr, nullptr},
                     {"D", "{1}", "SystemFolder", 0, nullptr, nullptr}}}}),
        Make("A", {{"Component", {{"D", "{1}", "SystemFolder", 0, nullptr, nullptr}}}}, "1.0",
             1031),
        Make("B", {{"Component", {{"D", "{1}", "SystemFolder", 0, nullptr, nullptr}}}})},
       {"error component-conflict Component A:1033"}},
      {"within a module",
       {Make("A", {{"Component",
                    {{"C", "{1}", "TARGETDIR", 0, nullptr, nullptr},
                     {"D", "{1}", "SystemFolder", 0, nullptr, nullptr}}}})},
       {"error component-conflict Component A:1033"}},
  });
}

TEST(CheckTest, FilesOfOneNameAndFolderCollideHoweverTheFolderIsSpelled) {
  const auto first = MakeFile({"a.dll", "SystemFolder", ".A"});
  const auto second = [](const std::string& directory, const Rows& directories,
                         const OneFile& file = {}) {
    return MakeFile({file.name, directory, ".B", file.componentId, file.condition}, directories);
  };
  const Lines conflict{"error file-conflict A:1033 B:1033"};
  const Lines perhaps{"warning file-conflict A:1033 B:1033"};
  const SomeRows component{"Component", {{"C", "{1}", "SystemFolder", 0, nullptr, nullptr}}};
  const auto fileRow = [](const char* key, const char* version) {
    return std::vector<Cell>{key, "C", "a.dll", 1, version, nullptr, 1};
  };
  CheckAll({
      {"suffix and case", Pair(first, second("SystemFolder.0A1B", {}, {"A.DLL"})), conflict},
      {"a directory of no name", Pair(first, second("Sys.B", {{"Sys.B", "SystemFolder", "."}})),
       conflict},
      {"another folder", Pair(first, second("Sub.B", {{"Sub.B", "SystemFolder", "SUB|sub"}})), {}},
      {"names of both lengths",
       Pair(MakeFile({"a.dll", "X.A", ".A"}, {{"X.A", "SystemFolder", "PLAIN|Some Folder:src"}}),
            second("X.B", {{"X.B", "SystemFolder.9", "some folder"}})),
       conflict},
      {"a property of its own",
       Pair(MakeFile({"a.dll", "FontsFolder", ".A"}),
            second("X.B", {{"X.B", "WindowsFolder", "Fonts"}})),
       conflict},
      {"a property two folders deep",
       Pair(MakeFile({"a.lnk", "StartupFolder", ".A"}),
            MakeFile({"a.lnk", "X.B", ".B"},
                     {{"Y.B", "StartMenuFolder", "Programs"}, {"X.B", "Y.B", "Startup"}})),
       conflict},
      {"a bracket at the end of a name",
       Pair(MakeFile({"a.dll", "X.A", ".A"}, {{"X.A", "Y.A", "b"}, {"Y.A", "SystemFolder", "a]"}}),
            MakeFile({"a.dll", "X.B", ".B"}, {{"X.B", "SystemFolder", "a]b"}})),
       {}},
      {"a folder that the product chooses",
       Pair(MakeFile({"a.dll", "X.A", ".A"}, {{"X.A", "TARGETDIR", "bin"}}),
            second("X.B", {{"X.B", "TARGETDIR", "bin"}})),
       perhaps},
      {"one component",
       Pair(MakeFile({"a.dll", "SystemFolder", "", "{1}"}),
            MakeFile({"a.dll", "SystemFolder", "", "{1}"})),
       {}},
      {"two rows of one component",
       Pair({component, {"File", {fileRow("F1", "1.0")}}},
            {component, {"File", {fileRow("F2", "2.0")}}}),
       conflict},
      {"two rows of one component, and an alternative that has one of them",
       {Make("A", {component, {"File", {fileRow("F1", "1.0")}}}),
        Make("A", {component, {"File", {fileRow("F2", "1.0")}}}, "1.0", 1031),
        Make("B", {component, {"File", {fileRow("F2", "1.0")}}})},
       {}},
      {"alternatives of which one shares the component",
       {Make("A", MakeFile({"a.dll", "SystemFolder", ".1", "{1}"})),
        Make("A", MakeFile({"a.dll", "SystemFolder", ".2", "{2}"}), "1.0", 1031),
        Make("B", MakeFile({"a.dll", "SystemFolder", ".2", "{2}"}))},
       {}},
      {"alternatives of which one has the component under another key",
       {Make("A", MakeFile({"a.dll", "SystemFolder", ".1", "{1}"})),
        Make("A", MakeFile({"a.dll", "SystemFolder", ".2", "{2}"}), "1.0", 1031),
        Make("B", MakeFile({"a.dll", "SystemFolder", ".3", "{2}"}))},
       {"warning component-conflict Component A:1031 B:1033"}},
      {"alternatives that agree with one of two others",
       {Make("A", MakeFile({"a.dll", "SystemFolder", ".1", "{1}"})),
        Make("A", MakeFile({"a.dll", "SystemFolder", ".2", "{2}"}), "1.0", 1031),
        Make("B", MakeFile({"a.dll", "SystemFolder", ".2", "{2}"})),
        Make("C", MakeFile({"a.dll", "SystemFolder", ".3", "{3}"}))},
       {"error file-conflict A:1031 C:1033"}},
      {"never both",
       Pair(MakeFile({"a.dll", "SystemFolder", ".A", "", "Version9X"}),
            second("SystemFolder", {}, {"a.dll", "", "", "", "VersionNT AND Privileged"})),
       {}},
      {"perhaps both",
       Pair(MakeFile({"a.dll", "SystemFolder", ".A", "", "X"}),
            second("SystemFolder", {}, {"a.dll", "", "", "", "VersionNT"})),
       perhaps},
      {"always one, and sometimes the other",
       Pair(first, second("SystemFolder", {}, {"a.dll", "", "", "", "X"})), conflict},
  });
  EXPECT_THAT(Check(Pair(MakeFile({"a.dll", "SystemFolder", ".A", "", "X"}),
                         second("SystemFolder", {}, {"a.dll", "", "", "", "VersionNT"})))
                  .front()
                  .text,
              HasSubstr("unless the conditions \"X\" and \"VersionNT\" never hold together"));
}

TEST(CheckTest, NamesAreUniqueInTheFoldersOfAModule) {
  const auto two = [](const char* nameOfFirst, const char* nameOfSecond,
                      const Cell& condition = nullptr, const Cell& other = nullptr) {
    std::vector<SomeRows> rows = MakeFile({nameOfFirst, "SystemFolder", "1", "", condition});
    for (const SomeRows& some : MakeFile({nameOfSecond, "SystemFolder.A", "2", "", other})) {
      rows.push_back(some);
    }
    return std::vector<merge::Module>{Make("A", rows)};
  };
  CheckAll({
      {"one file twice", two("a.dll", "A.DLL"), {"error duplicate-file File A:1033"}},
      {"never both", two("a.dll", "a.dll", "VersionNT", "NOT (VersionNT)"), {}},
      {"perhaps both", two("a.dll", "a.dll", "X", "Y"), {"warning duplicate-file File A:1033"}},
      {"short names",
       two("FIRST~1.TXT|first one.txt", "first~1.txt|first two.txt"),
       {"warning short-name-conflict A:1033"}},
      {"a short name and a name",
       two("FIRST.TXT", "FIRST.TXT|first two.txt"),
       {"warning short-name-conflict A:1033"}},
      {"short names of alternatives of which one agrees",
       {Make("A", MakeFile({"LONG~1.TXT|long one.txt", "SystemFolder", "", "{1}"})),
        Make("A", MakeFile({"LONG~1.TXT|long two.txt", "SystemFolder", "", "{1}"}), "1.0", 1031),
        Make("B", MakeFile({"LONG~1.TXT|long two.txt", "SystemFolder", "", "{1}"}))},
       {}},
      {"other names", two("FIRST~1.TXT|first one.txt", "FIRST~2.TXT|first two.txt"), {}},
      {"short names of two modules",
       Pair(MakeFile({"LONG~1.TXT|long one.txt", "SystemFolder", ".A"}),
            MakeFile({"LONG~1.TXT|long two.txt", "SystemFolder", ".B"})),
       {"warning short-name-conflict A:1033 B:1033"}},
  });
  const std::vector<merge::Finding> mixed = Check(two("FIRST.TXT|first one.txt", "FIRST.TXT"));
  ASSERT_EQ(1u, mixed.size());
  EXPECT_EQ("FIRST.TXT|first one.txt", mixed.front().values[0].value);
  EXPECT_EQ("FIRST.TXT", mixed.front().values[1].value);
}

TEST(CheckTest, RowsReferToRowsThatAreThere) {
  const SomeRows stray{"File", {{"F", "Gone", "a.dll", 1, nullptr, nullptr, 1}}};
  const auto directories = [](Rows rows) {
    return std::vector<merge::Module>{Make("A", {{"Directory", std::move(rows)}})};
  };
  const auto with = [](const char* value, Rows items) {
    return std::vector<merge::Module>{
        Make("A", {{"ModuleSubstitution", {{"Property", "P", "Value", value}}},
                   {"ModuleConfiguration", std::move(items), {{"Name", kText | kKey}}}})};
  };
  CheckAll({
      {"no component", {Make("A", {stray})}, {"error missing-component File F A:1033"}},
      {"a component of another module",
       {Make("A", {stray}),
        Make("B", {{"Component", {{"Gone", nullptr, "TARGETDIR", 0, nullptr, nullptr}}}})},
       {}},
      {"circle",
       directories({{"X", "Y", "x"}, {"Y", "X", "y"}, {"Z", "X", "z"}}),
       {"error directory-cycle Directory X A:1033"}},
      {"roots and chains", directories({{"X", "X", "x"}, {"Y", "X", "y"}, {"Z", "Y", "z"}}), {}},
      {"no parent",
       directories({{"X", "Gone", "x"}}),
       {"error missing-directory Directory X A:1033"}},
      {"a parent that the installer sets", directories({{"X", "SystemFolder.A", "x"}}), {}},
      {"items that are declared", with("[=I] and [=J]", {{"I"}, {"J"}}), {}},
      {"text without an item", with("\\[=I], [I] and [=", {{"J"}}), {}},
      {"an item that is not declared",
       with("[=I] and [=J]", {{"I"}}),
       {"error undeclared-item ModuleSubstitution Property/P/Value A:1033"}},
      {"no items at all",
       {Make("A", {{"ModuleSubstitution", {{"Property", "P", "Value", "[=I]"}}}})},
       {"error undeclared-item ModuleSubstitution Property/P/Value A:1033"}},
      {"an item that another module declares",
       {with("[=I]", {})[0],
        Make("B", {{"ModuleConfiguration", {{"I"}}, {{"Name", kText | kKey}}}})},
       {"error undeclared-item ModuleSubstitution Property/P/Value A:1033"}},
      {"no directory of a component",
       {Make("A", {{"Component", {{"C", nullptr, "Gone", 0, nullptr, nullptr}}}})},
       {"error missing-directory Component C A:1033"}},
  });
}

TEST(CheckTest, EveryActionHasAPlaceInItsSequence) {
  const char* const table = "ModuleInstallExecuteSequence";
  const auto after = [](const char* action, const char* base) {
    return std::vector<Cell>{action, nullptr, base, 1, nullptr};
  };
  const std::vector<Cell> files{"InstallFiles", 4000, nullptr, nullptr, nullptr};
  const std::vector<Cell> numbered{"Fill", 4100, "Gone", 1, nullptr};
  CheckAll({
      {"numbers, chains and actions of the installer",
       {Make("A", {{table,
                    {files, numbered, after("B", "C"), after("C", "InstallFiles"),
                     after("D", "PublishProduct"), after("E", "Fill")}}})},
       {}},
      {"a base action of another module",
       Pair({{table, {after("B", "Other")}}}, {{table, {after("Other", "InstallFiles")}}}),
       {}},
      {"a base action in another table",
       Pair({{table, {after("B", "Other")}}}, {{"ModuleInstallUISequence",
                                                {after("Other", "CostFinalize")},
                                                ColumnsOf("ModuleInstallExecuteSequence")}}),
       {"warning unplaced-action ModuleInstallExecuteSequence B A:1033"}},
      {"neither a number nor a base action",
       {Make("A", {{table, {{"B", nullptr, nullptr, nullptr, nullptr}, after("C", "B")}}})},
       {"error unplaced-action ModuleInstallExecuteSequence B A:1033"}},
      {"a circle, an action that leads to it, and one beside itself",
       {Make("A", {{table, {after("B", "C"), after("C", "B"), after("D", "B"), after("E", "E")}}})},
       {"error unplaced-action ModuleInstallExecuteSequence B A:1033",
        "error unplaced-action ModuleInstallExecuteSequence E A:1033"}},
      {"a table with other columns",
       {Make("A",
             {{table, {{"B", nullptr}}, {{"Action", kText | kKey}, {"Base", kText | kNullable}}}})},
       {}},
  });
  const auto findings = Check({Make("A", {{table, {after("B", "C"), after("C", "B")}}})});
  ASSERT_EQ(1u, findings.size());
  EXPECT_EQ(5, findings.front().mergeError);
  EXPECT_EQ(
      "A:1033 places actions of table ModuleInstallExecuteSequence beside one another, and "
      "the last one beside the first: B, C",
      findings.front().text);
}

TEST(CheckTest, CirclesThatOnlyAMergeClosesAreFoundInAMerge) {
  const char* const table = "ModuleInstallExecuteSequence";
  const auto directory = [](const char* key, const char* parent) {
    return SomeRows{"Directory", {{key, parent, "x"}}};
  };
  const auto after = [&](const char* action, const char* base) {
    return SomeRows{table, {{action, nullptr, base, 1, nullptr}}};
  };
  const std::vector<Case> cases = {
      {"directories",
       Pair({directory("X", "Y")}, {directory("Y", "X")}),
       {"error directory-cycle Directory X A:1033 B:1033"}},
      {"directories that the installer sets",
       Pair({directory("X", "SystemFolder.Y")}, {directory("SystemFolder.Y", "X")}),
       {}},
      {"a chain of directories", Pair({directory("X", "Y")}, {directory("Y", "TARGETDIR")}), {}},
      {"a row that the merge has from another module",
       {Make("A", {directory("X", "TARGETDIR")}), Make("B", {directory("Y", "X")}),
        Make("C", {directory("X", "Y")})},
       {"error row-conflict Directory X A:1033 C:1033"}},
      {"a circle of a module and one more of its rows",
       Pair({directory("X", "Y")}, {directory("X", "Y"), directory("Y", "X")}),
       {"error directory-cycle Directory X B:1033"}},
      {"actions",
       Pair({after("Fill", "Wipe")}, {after("Wipe", "Fill")}),
       {"error unplaced-action ModuleInstallExecuteSequence Fill A:1033 B:1033"}},
      {"an action with a number",
       Pair({after("Fill", "Wipe")}, {{table, {{"Wipe", 4000, "Fill", 1, nullptr}}}}),
       {}},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(one.findings, Summarize(Check(one.modules, merge::CheckedAs::Merge))) << one.what;
  }
  EXPECT_THAT(Summarize(Check(cases.front().modules)), ElementsAre());
  const auto found = Check(cases.front().modules, merge::CheckedAs::Merge);
  EXPECT_EQ(
      "once merged, directories lie below one another, and the last one below the first: X of "
      "A:1033, Y of B:1033",
      found.front().text);
}

TEST(CheckTest, VersionsAreUpToFourNumbers) {
  for (const char* const version : {"1", "1.2.3.4", "0.0", "65535.0"}) {
    EXPECT_THAT(Summarize(Check({Make("A", {}, version)})), ElementsAre()) << version;
  }
  for (const char* const version :
       {"", "x", "1.", ".1", "1..2", "1.2.3.4.5", "65536", "1.0a", "-1", "99999999999999999999"}) {
    EXPECT_THAT(Summarize(Check({Make("A", {}, version)})),
                ElementsAre("warning malformed-version ModuleSignature A:1033"))
        << version;
  }
  EXPECT_THAT(
      Summarize(Check({Make("A", {{"ModuleDependency", {{"A", 1033, "A", 0, "new"}}},
                                  MakeFile({"a.dll", "SystemFolder", "1", "", {}, "F2"})[0],
                                  MakeFile({"a.dll", "SystemFolder", "1", "", {}, "F2"})[1],
                                  MakeFile({"b.dll", "SystemFolder", "2", "", {}, "F3"})[0],
                                  MakeFile({"b.dll", "SystemFolder", "2", "", {}, "F3"})[1]})})),
      ElementsAre("warning malformed-version File F2 A:1033",
                  "warning malformed-version ModuleDependency A:1033"));
}

TEST(CheckTest, LanguagesPackageCodesAndPlatformsFit) {
  const auto with = [](const char* id, const char* code, const char* version = "1.0") {
    merge::Module module = Make(id, {}, version);
    module.packageCode = code;
    return module;
  };
  const auto needs = [](const char* id, const char* other, const char* platform) {
    return Make(id, {{"ModuleDependency", {{id, 1033, other, 0, nullptr}}}}, "1.0", 1033, platform);
  };
  const auto on = [](const char* id, const char* platform) {
    return Make(id, {}, "1.0", 1033, platform);
  };
  CheckAll({
      {"the template has another language",
       {Make("A", {}, "1.0", 1033, "Intel;1031,2057")},
       {"warning template-language A:1033"}},
      {"a primary language", {Make("A", {}, "1.0", 1033, "Intel;9")}, {}},
      {"every language", {Make("A", {}, "1.0", 1033, "Intel;0")}, {}},
      {"no language", {Make("A", {}, "1.0", 1033, "Intel")}, {}},
      {"one code of two modules",
       {with("A", "{1A}"), with("B", "{1a}")},
       {"warning duplicate-package-code A:1033 B:1033"}},
      {"one code of two versions",
       {with("A", "{1}"), with("A", "{1}", "2.0")},
       {"warning duplicate-key A:1033 A:1033", "warning duplicate-package-code A:1033 A:1033",
        "note several-versions A:1033 A:1033"}},
      {"copies", {with("A", "{1}"), with("A", "{1}")}, {"warning duplicate-key A:1033 A:1033"}},
      {"no codes", {with("A", ""), with("B", "")}, {}},
      {"x86 needs x64",
       {needs("A", "B", "Intel;1033"), on("B", "x64;1033")},
       {"error platform-conflict A:1033 B:1033"}},
      {"x64 needs x86",
       {needs("A", "B", "x64;1033"), on("B", ";1033")},
       {"note platform-conflict A:1033 B:1033"}},
      {"one platform, two names", {needs("A", "B", "x64;1033"), on("B", "AMD64;1033")}, {}},
      {"one of two fits",
       {needs("A", "B", "Intel;1033"), on("B", "x64;1033"), on("B", "Intel;1033")},
       {"warning duplicate-key B:1033 B:1033"}},
      {"not needed", {on("A", "Intel;1033"), on("B", "x64;1033")}, {}},
  });
  EXPECT_EQ(14, Check({needs("A", "B", "Intel;1033"), on("B", "x64;1033")}).front().mergeError);

  const std::vector<merge::Module> mixed{on("A", "x64;1033"), on("B", "AMD64;1033"),
                                         on("C", "Intel64;1033"), on("D", "Intel;1033")};
  EXPECT_THAT(Summarize(Check(mixed)), ElementsAre());
  const std::vector<merge::Finding> merged = Check(mixed, merge::CheckedAs::Merge);
  EXPECT_THAT(Summarize(merged), ElementsAre("error platform-conflict C:1033 A:1033"));
  EXPECT_EQ(
      "a package is for one 64-bit platform, but these are merged: C:1033 for Intel64, A:1033 and "
      "1 more for x64",
      merged.front().text);
  EXPECT_EQ(14, merged.front().mergeError);
  EXPECT_THAT(Summarize(Check({mixed[0], mixed[1], mixed[3]}, merge::CheckedAs::Merge)),
              ElementsAre());

  merge::Module described;  // by the gallery, which knows no platforms
  described.moduleId = described.key = "D";
  described.language = 1033;
  described.requirements = {{"B", 1033, ""}};
  EXPECT_THAT(Summarize(Check({described, needs("A", "B", ";1033"), on("B", "x64;1033")})),
              ElementsAre("error platform-conflict A:1033 B:1033"));
}

TEST(CheckTest, AMergeTakesOneModuleOfAnIdAndNothingElseOfTheSet) {
  const auto merge = [](const std::vector<merge::Module>& modules) {
    return Summarize(Check(modules, merge::CheckedAs::Merge));
  };
  EXPECT_THAT(merge({Module("A"), Module("A", "1.0", 1031)}),
              ElementsAre("error several-languages A:1031 A:1033"));
  EXPECT_THAT(
      merge({Module("A"), Module("A", "2.0")}),
      ElementsAre("error duplicate-key A:1033 A:1033", "error several-versions A:1033 A:1033"));
  EXPECT_THAT(Summarize(Check({Module("A"), Module("A", "1.0", 1031)})), ElementsAre());

  const std::vector<merge::Module> modules{Module("A", "1.0", 1033, {{"B", 0, "1.0"}}),
                                           Module("B", "1.0"), Module("B", "2.0", 1031)};
  const merge::ModuleIndex set(modules);
  merge::CheckOptions options;
  options.checkedAs = merge::CheckedAs::Merge;
  EXPECT_THAT(Summarize(merge::CheckModules(set, {0, 1}, options)), ElementsAre());
  const std::vector<merge::Finding> alone = merge::CheckModules(set, {0}, options);
  EXPECT_THAT(Summarize(alone), ElementsAre("error missing-dependency A:1033"));
  EXPECT_EQ("A:1033 needs B, at least 1.0: B:1033 would do, but is not merged", alone.front().text);
  EXPECT_EQ("B", alone.front().required->moduleId);

  merge::Module jealous = Module("A");
  jealous.exclusions = {{"A", 0, "", "0.9"}};
  EXPECT_THAT(Summarize(Check({jealous, Module("A", "0.5")})),
              ElementsAre("warning duplicate-key A:1033 A:1033", "note exclusion A:1033 A:1033",
                          "note several-versions A:1033 A:1033"));
}

TEST(CheckTest, HoweverManyCollideTheFindingsAreBounded) {
  std::vector<merge::Module> modules;
  modules.reserve(3000);
  for (int i = 0; i < 3000; ++i) {
    modules.push_back(Make("M" + std::to_string(i), {{"Any", {{"P", std::to_string(i)}}}}));
  }
  const std::vector<merge::Finding> one = Check(modules);
  ASSERT_EQ(1u, one.size());
  EXPECT_EQ(8u, one.front().modules.size());
  EXPECT_THAT(one.front().text, HasSubstr("; it has 3000 different values in all"));

  Rows rows, others;
  for (int i = 0; i < 10000; ++i) {
    rows.push_back({std::to_string(i), "1"});
    others.push_back({std::to_string(i), "2"});
  }
  const std::vector<merge::Finding> many = Check(Pair({{"Any", rows}}, {{"Any", others}}));
  ASSERT_EQ(21u, many.size());
  EXPECT_TRUE(std::any_of(many.begin(), many.end(), [](const merge::Finding& finding) {
    return finding.text == "9980 more rows of table Any differ between A:1033 and B:1033";
  }));

  merge::Module needy = Module("A");
  for (int i = 0; i < 10000; ++i) {
    needy.requirements.push_back({"Gone" + std::to_string(i), 0, ""});
  }
  const std::vector<merge::Finding> missing = Check({needy});
  ASSERT_EQ(merge::FindingList::kMaxFindings + 1, missing.size());
  EXPECT_TRUE(missing.back().isRest);
  EXPECT_EQ("9000 more findings of this kind are not listed", missing.back().text);
}

TEST(CheckTest, ConditionsAreComparedWhereThatIsPlain) {
  using merge::ConditionRelation;
  const struct {
    const char *a, *b;
    ConditionRelation relation;
  } cases[] = {
      {"", "X", ConditionRelation::Overlapping},
      {"VersionNT  and Privileged", "(VersionNT AND Privileged)", ConditionRelation::Overlapping},
      {"X", "NOT X", ConditionRelation::Exclusive},
      {"NOT (X OR Y)", "X OR Y", ConditionRelation::Exclusive},
      {"NOT (X AND Y)", "X AND Y", ConditionRelation::Exclusive},
      {"not Version9X AND X", "Version9X AND Y", ConditionRelation::Exclusive},
      {"VersionNT64", "Version9X", ConditionRelation::Exclusive},
      {"VersionNT64", "NOT VersionNT", ConditionRelation::Exclusive},
      {"NOT VersionNT64", "VersionNT", ConditionRelation::Unknown},
      {"NOT NOT X", "NOT X", ConditionRelation::Exclusive},
      {"NOT (X) OR (Y)", "(X) OR (Y)", ConditionRelation::Unknown},
      {"X=\"a AND b\"", "NOT X=\"a AND b\"", ConditionRelation::Exclusive},
      {"X=1", "X=2", ConditionRelation::Unknown},
      {"versionnt", "Version9X", ConditionRelation::Unknown},
      {"(((", "NOT", ConditionRelation::Unknown},
      {"X AND", "Y AND NOT", ConditionRelation::Unknown},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(one.relation, merge::CompareConditions(one.a, one.b)) << one.a << " / " << one.b;
    EXPECT_EQ(one.relation, merge::CompareConditions(one.b, one.a)) << one.b << " / " << one.a;
  }
}

TEST(CheckTest, EveryCodeIsDescribed) {
  std::ifstream stream(std::filesystem::path(QM_SOURCE_DIR) / "docs/findings.md");
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  std::string_view before;
  for (const merge::FindingCode& code : merge::FindingCodes()) {
    EXPECT_LT(before, code.code);
    before = code.code;
    EXPECT_EQ(&code, &merge::GetFindingCode(code.code));
    const size_t section = text.find("\n## " + std::string(code.code) + "\n");
    ASSERT_NE(std::string::npos, section) << code.code;
    const std::string body = text.substr(section, text.find("\n## ", section + 1) - section);
    for (const char* const part : {"**Means:** ", "**Severity:** ", "**The installer:** ",
                                   "**Change:** ", "**Example:** "}) {
      EXPECT_NE(std::string::npos, body.find(part)) << code.code << ' ' << part;
    }
    EXPECT_NE(std::string::npos, body.find(merge::GetSeverityName(code.severity))) << code.code;
  }
}

TEST(CheckTest, DataThatSeveralModulesHaveIsReadAndCompared) {
  const std::pair<const char*, const char*> contents[] = {
      {"A", "same"}, {"B", "same"}, {"C", "else"}, {"D", "a longer one"}};
  std::map<std::string, CompoundFileImage> files;
  for (const auto& [id, data] : contents) {
    const std::string text = data;
    const DatabaseImage image{
        {{"ModuleSignature", ColumnsOf("ModuleSignature"), {{id, 0, "1.0"}}},
         {"Binary", ColumnsOf("Binary"), {{"Own", 1}, {"Icon", 1}}}},
        {{RowStream(u"Binary.Icon"), image::Bytes(text.begin(), text.end())}}};
    files.emplace(id, WriteCompoundFile(WriteDatabase(image)));
  }
  merge::SharedStreams shared;
  const auto read = [&](const std::string& id) {
    shared.BeginModule(id + ".msm");
    MemorySource source = files.at(id).Source();
    merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage, &shared);
    EXPECT_EQ("", module.failure);
    module.path = id + ".msm";
    return module;
  };
  std::vector<merge::Module> modules;
  for (const auto& [id, data] : contents) {
    modules.push_back(read(id));
  }
  EXPECT_EQ(std::nullopt, modules[3].FindTable("Binary")->StreamHash(1, 1));
  EXPECT_THAT(shared.TakeUnread(), ElementsAre("A.msm"));
  modules[0] = read("A");
  EXPECT_THAT(shared.TakeUnread(), ElementsAre());

  modules.pop_back();
  const std::vector<merge::Finding> findings = Check(modules);
  EXPECT_THAT(Summarize(findings), ElementsAre("error row-conflict Binary Icon A:0 C:0 B:0"));
  EXPECT_NE(findings[0].values[0].value, findings[0].values[1].value);
  modules.pop_back();
  EXPECT_THAT(Summarize(Check(modules)), ElementsAre());

  const auto withIcon = [](const char* id, std::vector<Stream> streams) {
    const DatabaseImage image{{{"ModuleSignature", ColumnsOf("ModuleSignature"), {{id, 0, "1.0"}}},
                               {"Binary", ColumnsOf("Binary"), {{"Icon", 1}}}},
                              std::move(streams)};
    MemorySource source = WriteCompoundFile(WriteDatabase(image)).Source();
    return merge::ReadModule(source, merge::DecodeCommonCodePage);
  };
  EXPECT_THAT(Summarize(Check({withIcon("A", {{RowStream(u"Binary.Icon"), {}}}), withIcon("B", {})},
                              merge::CheckedAs::Merge)),
              ElementsAre("error row-conflict Binary Icon A:0 B:0"));
}

TEST(CheckTest, ObjectionsToAPlanNameTwoModulesWhereTwoAreEnough) {
  const auto objectionsTo = [](const std::vector<merge::Module>& modules) {
    std::vector<std::vector<size_t>> pairs;
    for (const merge::Objection& objection :
         merge::FindCheckObjections(merge::ModuleIndex(modules), {0, 1, 2}, {})) {
      pairs.push_back(objection.modules);
    }
    return pairs;
  };
  const auto with = [](const char* id, const char* value) {
    return Make(id, {{"Any", {{"P", value}}}});
  };
  EXPECT_THAT(objectionsTo({with("A", "1"), with("B", "1"), with("C", "2")}),
              ElementsAre(ElementsAre(0u, 2u)));
  const auto on = [](const char* id, const char* platform) {
    return Make(id, {}, "1.0", 1033, platform);
  };
  EXPECT_THAT(
      objectionsTo({on("A", "x64;1033"), on("B", "Arm64;1033"), on("C", "Arm64;1033")}),
      testing::UnorderedElementsAre(ElementsAre(1u, 0u), ElementsAre(2u, 0u), ElementsAre(0u, 1u)));
}

TEST(CheckTest, ModulesOfOthersHaveTheFindingsThatTheirTablesJustify) {
  const std::filesystem::path folder =
      std::filesystem::path(QM_SOURCE_DIR).parent_path() / "shared/modules";
  if (!std::filesystem::exists(folder)) {
    GTEST_SKIP() << "shared/modules is not beside this tree";
  }
  std::vector<merge::Module> modules;
  merge::SharedStreams shared;
  for (const bool isAgain : {false, true}) {  // what is shared is known at the second time
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (entry.path().extension() != ".msm") {
        continue;
      }
      const std::string name = entry.path().filename().string();
      std::ifstream stream(entry.path(), std::ios::binary);
      MemorySource source(image::Bytes(std::istreambuf_iterator<char>(stream), {}));
      shared.BeginModule(name);
      merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage, &shared);
      if (isAgain) {
        modules.push_back(std::move(module));
        modules.back().path = name;
      }
    }
  }
  ASSERT_LE(12u, modules.size());
  // Rows that several of them have are equal, and files of one name go to different folders.
  EXPECT_THAT(Summarize(Check(modules)), ElementsAre("error unreadable-module MergeModule.msm"));
}

}  // namespace

}  // namespace qm::tests
