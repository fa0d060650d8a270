#include "traits/ProjectDatabase.h"

#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"

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
    EXPECT_FALSE(msidb::IsInstallerProject(test.database)) << "without the table";
    test.Run(
        L"CREATE TABLE `Quillmark` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR PRIMARY "
        L"KEY `Property`)");
    test.Insert(L"Quillmark", {L"Other", L"MSIE"});
    if (c.type) {
      test.Insert(L"Quillmark", {L"Type", c.type});
    }
    EXPECT_EQ(c.installer, msidb::IsInstallerProject(test.database));
    EXPECT_EQ(c.module, msidb::IsMergeModuleProject(test.database));
  }
}

}  // namespace
