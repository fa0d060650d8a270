#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/image/FuzzTargets.h"

namespace qm::tests {

namespace {

/// The inputs that tools/fuzz starts from, and those that it has found.
TEST(CorpusTest, NoFileOfTheCorpusBreaksAPromise) {
  for (const FuzzTarget& target : kFuzzTargets) {
    std::size_t files = 0;
    for (const auto& file : std::filesystem::directory_iterator(
             std::filesystem::path(QM_SOURCE_DIR) / "tests/image/corpus" / target.corpus)) {
      SCOPED_TRACE(file.path().string());
      std::ifstream stream(file.path(), std::ios::binary);
      target.run(image::Bytes(std::istreambuf_iterator<char>(stream), {}));
      ++files;
    }
    EXPECT_GT(files, 0U) << target.name;
  }
}

}  // namespace

}  // namespace qm::tests
