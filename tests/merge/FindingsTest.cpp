#include "merge/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "merge/ModuleUsers.h"
#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;

std::vector<std::string> FindingsOf(const std::vector<merge::Module>& modules) {
  std::vector<size_t> scope;
  for (size_t i = 0; i < modules.size(); ++i) {
    scope.push_back(i);
  }
  std::vector<std::string> lines;
  const merge::ModuleIndex set(modules);
  for (const merge::Finding& finding : merge::CheckModules(set, scope)) {
    std::string line = finding.code;
    for (const std::string& module : finding.modules) {
      line += ' ' + module;
    }
    lines.push_back(line + " | " + finding.text);
  }
  return lines;
}

merge::Module WithFiles(merge::Module module, std::vector<merge::DeliveredFile> files) {
  module.files = std::move(files);
  return module;
}

TEST(FindingsTest, FilesConflictInOneFolderOnly) {
  merge::Module nameless = WithFiles(Module(""), {{"w.dll", "SystemFolder.5"}});
  merge::Module other = nameless;
  nameless.path = "1.msm";
  other.path = "2.msm";
  EXPECT_THAT(FindingsOf({nameless, other}),
              ElementsAre("file-conflict 1.msm 2.msm | w.dll goes to [SystemFolder] from 1.msm and "
                          "from 2.msm"));
  merge::Module second = WithFiles(
      Module("B"), {{"X.DLL", "Sys.2"}, {"y.dll", "WindowsFolder.2"}, {"lost.dll", "Lost.2"}});
  second.directories = {{"Sys.2", "SystemFolder", "."}};
  EXPECT_THAT(
      FindingsOf({WithFiles(Module("A"), {{"x.dll", "SystemFolder.1"},
                                          {"y.dll", "SystemFolder.1"},
                                          {"z.dll", "SystemFolder.1"},
                                          {"lost.dll", "Lost.2"}}),
                  second, WithFiles(Module("C"), {{"q.dll", "SystemFolder.3"}}),
                  WithFiles(Module("A", "1.0", 1031),
                            {{"z.dll", "SystemFolder.4"}, {"x.dll", "SystemFolder.4"}})}),
      ElementsAre("file-conflict A:1033 B:1033 | x.dll goes to [SystemFolder] from A:1033 and "
                  "from B:1033"));
}

TEST(FindingsTest, RowsOfCarriedModulesCountInTheirName) {
  merge::Module host = Module("Host", "1.0", 1033,
                              {{"Host", 1033, "1.0"},  // met by the host itself
                               {"Part", 0, "2.0"},     // carried
                               {"Gone", 0, "", "Part:0"},
                               {"Host", 0, "", "Part:0"},   // met by the host as well
                               {"Inner", 0, "", "Part:0"},  // carried as well
                               {"Part", 0, "3.0"}});        // carried, but too old
  host.carried = {{"part", 0, "2.0"}, {"Inner", std::nullopt, ""}};
  host.exclusions = {{"Other", 0, "", "", "Part:0"}, {"", 0, "", ""}};
  EXPECT_THAT(
      FindingsOf({host, Module("Other"), Module("")}),
      ElementsAre("exclusion Host:1033 Other:1033 | Host:1033 carries Part:0, which excludes "
                  "every version of Other:1033, which has version \"1.0\"",
                  "missing-dependency Host:1033 | Host:1033 carries Part:0, which needs Gone: "
                  "no module has this ID",
                  "missing-dependency Host:1033 | Host:1033 needs Part, at least 3.0: every "
                  "version is lower than 3.0"));
  const std::vector<merge::Module> modules{host, Module("Part", "1.0", 0)};
  const merge::ModuleIndex set(modules);
  EXPECT_EQ(1u, merge::PlanMerge(set, {0}).modules.size());
  EXPECT_TRUE(merge::ModuleUsers(set).Find({1}).empty());
}

TEST(FindingsTest, CarriedModulesCountForTheOtherModulesOfAMerge) {
  merge::Module carrier = Module("A");
  carrier.carried = {{"B", 1033, "2.0"}};
  merge::Module excluding = Module("C");
  excluding.exclusions = {{"b", 0, "2.0", "2.0"}};
  merge::Module tolerant = Module("C");
  tolerant.exclusions = {{"B", 0, "2.1", ""}, {"B", -1033, "", ""}};
  const struct {
    const char* name;
    merge::Module other;
    std::vector<std::string> findings;
  } cases[] = {
      {"a requirement", Module("C", "1.0", 1033, {{"b", 1033, "1.5"}}), {}},
      {"a requirement of a higher version",
       Module("C", "1.0", 1033, {{"B", 0, "2.1"}}),
       {"missing-dependency C:1033 | C:1033 needs B, at least 2.1: every version is lower than "
        "2.1"}},
      {"a requirement of another language",
       Module("C", "1.0", 1033, {{"B", 1031, ""}}),
       {"missing-dependency C:1033 | C:1033 needs B:1031: no module of this ID is for 1031"}},
      {"an exclusion",
       excluding,
       {"exclusion C:1033 A:1033 | C:1033 excludes versions from 2.0 to 2.0 of B:1033, which "
        "A:1033 carries in version \"2.0\""}},
      {"exclusions of another version and language", tolerant, {}},
  };
  for (const auto& [name, other, findings] : cases) {
    SCOPED_TRACE(name);
    EXPECT_EQ(findings, FindingsOf({carrier, other}));
  }
}

TEST(FindingsTest, AFileThatChangedIsNotThereOrCannotBeReadIsReported) {
  merge::Module changed = Module("A");
  changed.path = "a.msm";
  changed.change = "its version is 2.0";
  merge::Module damaged = Module("B");
  damaged.path = "b.msm";
  damaged.failure = "Damaged.";
  damaged.needsDownload = true;
  merge::Module absent = Module("C");
  absent.isFromGallery = true;
  absent.isPresent = false;
  merge::Module wanted = Module("D");
  wanted.isPresent = false;
  wanted.needsDownload = true;
  merge::Module present = Module("E");
  present.isFromGallery = true;
  EXPECT_THAT(FindingsOf({changed, damaged, absent, wanted, present}),
              ElementsAre("changed-module A:1033 | a.msm is not the file that was listed: its "
                          "version is 2.0",
                          "needs-download B:1033 | B:1033 is on this machine, but files that "
                          "belong to it are missing, or the object gallery has a newer version",
                          "needs-download C:1033 | C:1033 is in the object gallery, but its file "
                          "is not on this machine",
                          "needs-download D:1033 | D:1033 is in the object gallery, but its file "
                          "is not on this machine",
                          "unreadable-module B:1033 | b.msm cannot be read: Damaged."));
}

TEST(FindingsTest, IndexEntriesOfAnUnknownModuleAreReportedOnce) {
  const std::vector<merge::Module> modules{Module("A")};
  const auto findings =
      merge::CheckIndexes(merge::ModuleIndex(modules), {{"modules.ini", "A:1033", "a:1033"},
                                                        {"FilesToModules.ini", "a.dll", "A:"},
                                                        {"FilesToModules.ini", "x.dll", "B:0"},
                                                        {"FilesToModules.ini", "y.dll", "B:0"}});
  ASSERT_EQ(1u, findings.size());
  EXPECT_EQ("FilesToModules.ini names B:0 for \"x.dll\" and 1 more, and the set does not have it",
            findings.front().text);
}

}  // namespace

}  // namespace qm::tests
