#include "traits/CurrentTraits.h"

#include "tests/support/Testing.h"
#include "traits/ProjectTraitsManager.h"
#include "traits/TargetPath.h"

namespace qm::tests {

namespace {

TEST(CurrentTraitsTest, TheActiveProjectDecidesAtEveryCall) {
  for (const auto& [type, delimiter] : {std::pair(L"0", L"["), {L"1", L"<"}, {nullptr, L"["}}) {
    ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", type);
    EXPECT_EQ(traits::current::OpenDelimiter(), delimiter);
    EXPECT_EQ(traits::current::OpenDelimiterChar(), *delimiter);
    EXPECT_EQ(traits::IsScriptProjectActive(), *delimiter == L'<');
    EXPECT_EQ(L'[', traits::MakeTargetPathOptions().brackets->open)
        << "of installer properties in any case";
  }
  for (const wchar_t* const unknown : {L"2", L"7", L"-1", L"-2147483648"}) {
    ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", unknown);
    EXPECT_THROW(traits::current::InstallDirProperty(), com::MemoryException*);
    EXPECT_FALSE(traits::IsScriptProjectActive());
  }
}

}  // namespace

}  // namespace qm::tests
