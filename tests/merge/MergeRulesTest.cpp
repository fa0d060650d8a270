#include "merge/MergeRules.h"

#include <gtest/gtest.h>

namespace qm::tests {

namespace {

TEST(MergeRulesTest, VersionsCompareByTheirNumbers) {
  const struct {
    const char* a;
    const char* b;
    int order;
  } cases[] = {
      {"", "", 0},           {"", "0.0", 0},
      {"1", "1.0.0.0", 0},   {"1.2", "1.10", -1},
      {"2", "1.9.9.9", 1},   {"1.2.3.4.5", "1.2.3.4", 1},
      {"x", "0", 0},         {"1.x", "1.0", 0},
      {"1.2beta", "1.2", 0}, {"65536.0", "0", 1},
      {"01.002", "1.2", 0},  {"99999999999999999999", "99999999999999999998", 1},
      {".1", "0.1", 0},      {"1.", "1", 0},
      {"-1", "0", 0},
  };
  for (const auto& [a, b, order] : cases) {
    SCOPED_TRACE(std::string(a) + " and " + b);
    EXPECT_EQ(order, merge::CompareVersionTexts(a, b));
    EXPECT_EQ(-order, merge::CompareVersionTexts(b, a));
  }
}

TEST(MergeRulesTest, ALanguageFitsItselfItsGroupAndEveryLanguage) {
  const struct {
    std::optional<long> wanted;
    long language;
    bool fits;
  } cases[] = {
      {std::nullopt, 1033, true}, {0, 1033, true},  {0, 0, true},    {1033, 1033, true},
      {1033, 2057, false},        {9, 1033, true},  {9, 2057, true}, {9, 1031, false},
      {1033, 9, false},           {1033, 0, false}, {9, 0, false},   {1024, 1033, false},
  };
  for (const auto& [wanted, language, fits] : cases) {
    EXPECT_EQ(fits, merge::MatchesLanguage(wanted, language))
        << wanted.value_or(-1) << ' ' << language;
  }
}

TEST(MergeRulesTest, AnExclusionHitsTheVersionsWithinItsBounds) {
  const struct {
    merge::Exclusion exclusion;
    bool hits;  // module "Glyph", 1033, version 2.5
  } cases[] = {
      {{"Glyph", 1033, "", ""}, true},    {{"GLYPH", 1033, "", ""}, true},
      {{"Glyphs", 1033, "", ""}, false},  {{"Glyph", 1031, "", ""}, false},
      {{"Glyph", 0, "", ""}, true},       {{"Glyph", std::nullopt, "", ""}, true},
      {{"Glyph", 9, "", ""}, true},       {{"Glyph", -1033, "", ""}, false},
      {{"Glyph", -9, "", ""}, false},     {{"Glyph", -1031, "", ""}, true},
      {{"Glyph", 0, "2.5", ""}, true},    {{"Glyph", 0, "2.5.1", ""}, false},
      {{"Glyph", 0, "", "2.5"}, true},    {{"Glyph", 0, "", "2.4.9"}, false},
      {{"Glyph", 0, "2.0", "3.0"}, true}, {{"Glyph", 0, "3.0", "2.0"}, false},
  };
  for (const auto& [exclusion, hits] : cases) {
    EXPECT_EQ(hits, merge::Excludes(exclusion, "Glyph", 1033, "2.5"))
        << exclusion.moduleId << ' ' << exclusion.language.value_or(99) << ' '
        << exclusion.minVersion << ' ' << exclusion.maxVersion;
  }
}

}  // namespace

}  // namespace qm::tests
