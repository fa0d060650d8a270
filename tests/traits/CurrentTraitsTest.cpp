#include "traits/CurrentTraits.h"

#include "tests/support/Testing.h"
#include "traits/ProjectTraitsManager.h"
#include "traits/TargetPath.h"

namespace {

TEST(CurrentTraitsTest, TheActiveProjectDecidesAtEveryCall) {
  for (const auto& [type, delimiter] : {std::pair(L"0", L"["), {L"1", L"<"}, {nullptr, L"["}}) {
    ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", type);
    EXPECT_EQ(current_traits::OpenDelimiter(), delimiter);
    EXPECT_EQ(current_traits::OpenDelimiterChar(), *delimiter);
    EXPECT_EQ(IsScriptProjectActive(), *delimiter == L'<');
    EXPECT_EQ(L'[', TargetPathOptions().brackets->open) << "of installer properties in any case";
  }
  for (const wchar_t* const unknown : {L"2", L"7", L"-1", L"-2147483648"}) {
    ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", unknown);
    EXPECT_THROW(current_traits::InstallDirProperty(), CMemoryException*);
    EXPECT_FALSE(IsScriptProjectActive());
  }
}

}  // namespace
