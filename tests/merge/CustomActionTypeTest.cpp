#include "merge/CustomActionType.h"

#include <gtest/gtest.h>

namespace qm::tests {

namespace {

TEST(CustomActionTypeTest, FlagsMeanSomethingElseInDeferredActions) {
  const struct {
    std::optional<long> type;
    const char* description;
  } cases[] = {
      {std::nullopt, "has no type"},
      {51, "sets a property"},
      {0x40 + 34, "runs a program in a folder; ignores a failure"},
      {0x100 + 35, "sets the path of a folder; in the first sequence only"},
      {0x200 + 38, "runs VBScript of its row; once per process"},
      {0x300 + 19,
       "shows an error and ends the installation; again on the side of the user's process"},
      {0x400 + 18, "runs an installed program; deferred"},
      {0xC00 + 1, "calls a function of a DLL in the Binary table; deferred, as the system"},
      {0xD00 + 17, "calls a function of an installed DLL; on rollback, as the system"},
      {0x2E80 + 2,
       "runs a program in the Binary table; on commit, as the system, does not wait for its end, "
       "hides its target in logs"},
      {0x800 + 1, "calls a function of a DLL in the Binary table"},  // takes effect if deferred
      {0x1000 + 6, "runs VBScript in the Binary table; as a 64-bit script"},
      {63, "kind 63, which is unknown"},
      {-1,
       "kind 63, which is unknown; on rollback, as the system, ignores a failure, does not wait "
       "for its end, as a 64-bit script, hides its target in logs"},
  };
  for (const auto& [type, description] : cases) {
    EXPECT_EQ(description, merge::DescribeCustomActionType(type)) << type.value_or(0);
  }
}

}  // namespace

}  // namespace qm::tests
