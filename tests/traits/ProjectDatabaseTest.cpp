#include "traits/ProjectDatabase.h"

#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(ProjectDatabaseTest, TheTypeIsComparedExactly) {
  const struct {
    const wchar_t* type;
    bool installer, module;
  } cases[] = {
      {L"MSIE", true, false}, {L"MSM", false, true},   {L"MSIE ", false, false},
      {L"msm", false, false}, {nullptr, false, false},
  };
  for (const auto& c : cases) {
    TestDatabase test;
    EXPECT_FALSE(traits::IsInstallerProject(test.database)) << "without the table";
    test.Run(
        L"CREATE TABLE `Quillmark` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR PRIMARY "
        L"KEY `Property`)");
    test.Insert(L"Quillmark", {L"Other", L"MSIE"});
    if (c.type) {
      test.Insert(L"Quillmark", {L"Type", c.type});
    }
    EXPECT_EQ(c.installer, traits::IsInstallerProject(test.database));
    EXPECT_EQ(c.module, traits::IsMergeModuleProject(test.database));
  }
}

}  // namespace

}  // namespace qm::tests
