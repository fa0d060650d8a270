#include "merge/FileSearch.h"

#include <gtest/gtest.h>

namespace qm::tests {

namespace {

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
  std::vector<merge::ModuleDetails> modules(3);
  modules[0].files = {merge::MakeDeliveredFile("ÄB~1.TXT|Äblage.txt", "Dir", "K2", "", 5),
                      merge::MakeDeliveredFile("A.TXT", "Dir", "K1", "", {})};
  modules[2].files = {merge::MakeDeliveredFile("äb~1.txt", "Dir", "K3", "", {})};
  const auto keys = [&](const char* pattern) {
    std::string found;
    for (const auto& [module, file] : merge::FindFiles(modules, pattern)) {
      found += std::to_string(module) + file->key + ' ';
    }
    return found;
  };
  EXPECT_EQ("0K2 2K3 ", keys("äb~1.TXT"));
  EXPECT_EQ("0K2 ", keys("äBLAGE.*"));
  EXPECT_EQ("0K1 0K2 2K3 ", keys("*"));
  EXPECT_EQ("", keys(""));
}

}  // namespace

}  // namespace qm::tests
