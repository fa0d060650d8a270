#include "merge/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;

std::vector<std::string> FindingsOf(const std::vector<merge::MergeModule>& modules,
                                    std::vector<merge::ModuleDetails> details,
                                    std::vector<size_t> scope = {}) {
  if (scope.empty()) {
    for (size_t i = 0; i < modules.size(); ++i) {
      scope.push_back(i);
    }
  }
  details.resize(modules.size());
  std::vector<std::string> lines;
  const merge::MergeSet set(modules);
  for (const merge::Finding& finding :
       merge::CheckModules(set, details, scope, [](size_t, const std::string& directory) {
         return "[" + directory.substr(0, directory.find('.')) + "]";
       })) {
    std::string line = finding.code;
    for (const std::string& module : finding.modules) {
      line += ' ' + module;
    }
    lines.push_back(line + " | " + finding.text);
  }
  return lines;
}

merge::ModuleDetails Files(std::vector<merge::DeliveredFile> files) {
  merge::ModuleDetails module;
  module.files = std::move(files);
  return module;
}

TEST(FindingsTest, FilesConflictInOneFolderOnly) {
  merge::ModuleDetails nameless = Files({{"w.dll", "System.5"}}), other = nameless;
  nameless.path = "1.msm";
  other.path = "2.msm";
  EXPECT_THAT(FindingsOf({Module(""), Module("")}, {nameless, other}),
              ElementsAre("file-conflict 1.msm 2.msm | w.dll goes to [System] from 1.msm and from "
                          "2.msm"));
  EXPECT_THAT(
      FindingsOf(
          {Module("A"), Module("B"), Module("C"), Module("A", "1.0", 1031)},
          {Files({{"x.dll", "System.1"}, {"y.dll", "System.1"}, {"z.dll", "System.1"}}),
           Files({{"X.DLL", "SYSTEM.2"}, {"y.dll", "Windows.2"}}), Files({{"q.dll", "System.3"}}),
           Files({{"z.dll", "System.4"}, {"x.dll", "System.4"}})}),
      ElementsAre("file-conflict A:1033 B:1033 | x.dll goes to [System] from A:1033 and "
                  "from B:1033"));
}

TEST(FindingsTest, IndexEntriesOfAnUnknownModuleAreReportedOnce) {
  const std::vector<merge::MergeModule> modules{Module("A")};
  const auto findings =
      merge::CheckIndexes(merge::MergeSet(modules), {{"modules.ini", "A:1033", "a:1033"},
                                                     {"FilesToModules.ini", "a.dll", "A:"},
                                                     {"FilesToModules.ini", "x.dll", "B:0"},
                                                     {"FilesToModules.ini", "y.dll", "B:0"}});
  ASSERT_EQ(1u, findings.size());
  EXPECT_EQ("FilesToModules.ini names B:0 for \"x.dll\" and 1 more, and no folder has it",
            findings.front().text);
}

}  // namespace

}  // namespace qm::tests
