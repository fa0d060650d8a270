#include "client/catalog/ModuleNames.h"

#include <gmock/gmock.h>

#include "client/catalog/Wildcards.h"

namespace mmcat {

namespace {

using testing::ElementsAre;

const std::vector<NamedModule> kModules{
    {"Charmap.3128F3C8:1033", "Charmap.3128F3C8", "/modules/Charmap.msm"},
    {"Charmap.3128F3C8:1031", "Charmap.3128F3C8", "/modules/CharmapGerman.msm"},
    {"CharmapCore.AA55:1033", "CharmapCore.AA55", "C:\\More\\core.msm"},
    {"Zip.0001:0", "Zip.0001", "/modules/Zip.msm", "Packer"},
    {"Zip.0002:0", "Zip.0002", "/more/Zip.msm", "Packer"},
    {"Gallery.1:0", "Gallery.1", "", "Gr\u00F6\u00DFen, alle"},
};

TEST(ModuleNamesTest, AWordNamesModulesByTheBeginningOfAnIdOrByAFile) {
  const struct {
    const char* word;
    std::vector<size_t> modules;
    size_t candidates;
  } cases[] = {
      {"charMAP", {0, 1}, 0},  // an ID with this name, though another begins like it
      {"Charmap:1031", {1}, 0},  {"Charmap:1036", {}, 0},
      {"charmap.3", {0, 1}, 0},  {"CharmapC", {2}, 0},
      {"Char", {}, 3},           {"Zip", {}, 2},
      {"Zip.0002", {4}, 0},      {"core", {2}, 0},
      {"core.MSM", {2}, 0},      {"More/core", {2}, 0},
      {"zip.msm", {}, 2},        {"modules\\Zip.msm", {3}, 0},
      {"/more/zip.msm", {4}, 0}, {"es/Zip.msm", {}, 0},  // only whole names of folders
      {"Nobody", {}, 0},         {"", {}, 0},
      {"packer", {}, 2},         {"gr\u00D6\u00DFen, Alle", {5}, 0},
  };
  for (const auto& [word, modules, candidates] : cases) {
    const NameMatch match = MatchName(kModules, word);
    EXPECT_EQ(match.modules, modules) << word;
    EXPECT_EQ(match.candidates.size(), candidates) << word;
  }
  EXPECT_THAT(MatchName(kModules, "zip.msm").candidates,
              ElementsAre("/modules/Zip.msm", "/more/Zip.msm"));
}

TEST(ModuleNamesTest, PatternsMatchWholeTexts) {
  EXPECT_TRUE(MatchesPattern("ch*RE.aa5?:*", kModules[2]));
  EXPECT_TRUE(MatchesPattern("*german.msm", kModules[1]));
  EXPECT_TRUE(MatchesPattern("gr\u00F6\u00DFe ?", "GR\u00D6\u00DFE \u6F22"));
  EXPECT_FALSE(MatchesPattern("german", kModules[1]));
  EXPECT_FALSE(MatchesPattern("*a*a*a", "banan"));
}

}  // namespace

}  // namespace mmcat
