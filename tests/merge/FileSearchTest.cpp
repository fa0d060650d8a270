#include "merge/FileSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

using testing::ElementsAre;

TEST(FileSearchTest, WildcardsMatchWholeNames) {
  const struct {
    const char* pattern;
    const char* name;
    bool matches;
  } cases[] = {
      {"a.dll", "a.dll", true},   {"a.dll", "a.dlls", false},  {"*", "", true},
      {"?", "", false},           {"*", "x;y", true},          {"a;b", "a", false},
      {"*.dll", "x.y.dll", true}, {"*.dll", "x.dll.z", false}, {"*.d*l", "x.dl.dll", true},
      {"a*b*c", "aXbYbZc", true}, {"a*b*c", "aXcYb", false},   {"**a", "ba", true},
      {"??.x", "äß.x", true},     {"?.x", "äß.x", false},      {"*ß", "ääß", true},
      {"a?c", "ac", false},       {"[a]", "a", false},         {"*a", "aaaaaaaaaaaaaaab", false},
  };
  for (const auto& [pattern, name, matches] : cases) {
    EXPECT_EQ(matches, merge::MatchesPattern(name, pattern)) << pattern << ' ' << name;
  }
}

TEST(FileSearchTest, LongAndShortNamesMatchInAnyCase) {
  std::vector<merge::Module> modules(3);
  modules[0].files = {{"Äblage.txt", "Dir", "ÄB~1.TXT", "K2"}, {"A.TXT", "Dir", "", "K1"}};
  modules[2].files = {{"äb~1.txt", "Dir", "", "K3"}};
  const auto keys = [&](const char* pattern) {
    std::string found;
    for (const auto& [module, file] : merge::FindFiles(modules, pattern)) {
      found += std::to_string(module) + std::string(file->key) + ' ';
    }
    return found;
  };
  EXPECT_EQ("0K2 2K3 ", keys("äb~1.TXT"));
  EXPECT_EQ("0K2 ", keys("äBLAGE.*"));
  EXPECT_EQ("0K1 ", keys("a.*"));
  EXPECT_EQ("0K1 0K2 2K3 ", keys("*"));
  EXPECT_EQ("", keys(""));
}

TEST(FileSearchTest, EveryDelivererIsListedOnceAndWrongEntriesAreNamed) {
  std::vector<merge::Module> modules{Module("A"),   Module("B"),   Module("a", "2.0"),
                                     Module("C:D"), Module("Bad"), Module("Far")};
  modules[0].files = {{"x.dll", "Dir1", "", "K2"}, {"X.dll", "Dir2", "X~1.DLL", "K1"}};
  modules[1].files = {{"y.dll", "Dir", "Y~1.DLL"}, {"other.txt", "Dir"}};
  modules[4].failure = "Damaged.";
  for (merge::Module& module : modules) {
    module.path = module.key == "Far:1033" ? "" : "here.msm";
    module.isPresent = false;  // of some, files have to be downloaded
  }
  const std::vector<merge::IndexEntry> entries{
      {"1.ini", "X.DLL", "A:1033"},   {"2.ini", "x.dll", "a:1033"},
      {"1.ini", "x.dll", "Gone:0"},   {"2.ini", "X.dll", "gone:0"},
      {"1.ini", "x.dll", "C:D:1033"}, {"1.ini", "x.dll", "Bad:1033"},
      {"1.ini", "x.dll", "Far:1033"}, {"1.ini", "y~1.dll", "B:1033"},
      {"1.ini", "z.txt", "B:1033"},
  };
  const merge::ModuleIndex set(modules);
  const auto lines = [&](const char* pattern) {
    std::vector<std::string> found;
    for (const merge::Deliverer& one : merge::FindDeliverers(set, entries, pattern)) {
      const char* const faults[] = {"", " absent", " not delivered"};
      found.push_back(one.file + ' ' + one.moduleKey +
                      (one.module ? " at " + std::to_string(*one.module) : "") + ' ' +
                      std::to_string(one.copies.size()) + " copies " +
                      std::to_string(one.entries.size()) + " entries" +
                      faults[static_cast<int>(one.fault)]);
    }
    return found;
  };
  EXPECT_THAT(lines("x.dll"), ElementsAre("X.dll A:1033 at 0 2 copies 2 entries",
                                          "x.dll C:D:1033 at 3 0 copies 1 entries not delivered",
                                          "x.dll Bad:1033 at 4 0 copies 1 entries",
                                          "x.dll Far:1033 at 5 0 copies 1 entries",
                                          "x.dll Gone:0 0 copies 2 entries absent"));
  EXPECT_THAT(lines("y*"), ElementsAre("y.dll B:1033 at 1 1 copies 1 entries"));
  EXPECT_THAT(lines("*.txt"), ElementsAre("other.txt B:1033 at 1 1 copies 0 entries",
                                          "z.txt B:1033 at 1 0 copies 1 entries not delivered"));
}

}  // namespace

}  // namespace qm::tests
