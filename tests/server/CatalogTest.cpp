#include "tests/support/CatalogTest.h"

#include <filesystem>

#include "common/Bstr.h"
#include "tests/support/Answers.h"

namespace {

class CatalogTest : public CCatalogTest {};

TEST_F(CatalogTest, ListsSourcesInTwoPassesAndThenTheGallery) {
  SetSearchPath(L"*two,*one,*missing,*TWO\\,Q:\\removed");
  WriteModule(L"one\\b.msm", "Alpha", "1.0", 1031);
  WriteModule(L"one\\a.msm", "Beta");
  WriteModule(L"two\\z.msm", "Alpha");
  WriteModule(L"two\\not a module.ms", "Gamma");
  std::filesystem::create_directories(PathOf(L"two\\folder.msm"));
  WriteDescription(L"known", "Beta");
  WriteDescription(L"new", "Delta", "2.0", 0);
  WriteDescription(L"unnamed", "");
  const auto catalog = NewCatalog();
  EXPECT_EQ(L"Alpha:1031 Beta:1033 Alpha:1033 Delta:0", KeysOf(catalog.Get()));
}

}  // namespace
